#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>

// Runs all benchmarks, then prints each as a ratio against its floor, which was measured in the
// same run. Names pair them: "NAME/ours" and "NAME/floor". Returns main's exit status.
int RunWithRatios(int argc, char** argv);
