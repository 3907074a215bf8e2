#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>

// Runs all benchmarks, then prints a table: the time of "NAME/ours", the time of "NAME/floor" and their
// ratio. Returns main's exit status.
int RunWithRatios(int argc, char** argv);
