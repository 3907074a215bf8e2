#pragma once

#include <cstddef>

// Returns how often this process has called operator new. A test program that uses it compiles
// AllocationCount.cpp, which replaces the operators.
std::size_t AllocationCount();
