#pragma once

#include <string>

namespace bench {

// "12 ms"; below 10 ms with two decimals.
std::string Milliseconds(double ms);

// "1.0"
std::string OneDecimal(double value);

}  // namespace bench
