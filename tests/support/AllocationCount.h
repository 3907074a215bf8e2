#pragma once

#include <cstddef>

// How often this process has called operator new. A test program that asks compiles
// AllocationCount.cpp, which replaces the operators.
std::size_t AllocationCount();
