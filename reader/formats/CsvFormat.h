#pragma once

#include <memory>

#include "RowFormat.h"

namespace reader {

// A null selection selects everything. `forSpreadsheets`: a text that a spreadsheet would take for a formula
// (it begins with = + - @, a tab or a carriage return) gets an apostrophe before it.
std::unique_ptr<RowFormat> MakeCsvFormat(const Selection* selection, bool forSpreadsheets);

}  // namespace reader
