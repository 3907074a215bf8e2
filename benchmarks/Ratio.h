#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>

// Runs all benchmarks, then prints a table: each beside its floor, which was measured in the
// same run, with the ratio. Names pair them: "NAME/ours" and "NAME/floor". Returns main's exit status.
int RunWithRatios(int argc, char** argv);
