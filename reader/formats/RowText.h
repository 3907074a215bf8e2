#pragma once

#include <string>

#include "Row.h"

namespace reader {

// Appends a record's text for people. Measured values get labels and units: "50 km/h", "target 54, fastest
// 120, locked 131 km/h". Row::text must be filled.
void AppendRowText(const Row& row, std::string& out);

}  // namespace reader
