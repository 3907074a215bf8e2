#pragma once

#include <string>

namespace bench {

// Formats as "12 ms". Values below 10 ms have two decimals.
std::string Milliseconds(double ms);

// Formats as "1.0".
std::string OneDecimal(double value);

}  // namespace bench
