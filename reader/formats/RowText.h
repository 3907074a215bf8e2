#pragma once

#include <string>

#include "Row.h"

namespace reader {

// Appends the text of a record for people, as the format has it; measured values with their labels and
// units: "50 km/h", "target 54, fastest 120, locked 131 km/h". The record was read with its text.
void AppendRowText(const Row& row, std::string& out);

}  // namespace reader
