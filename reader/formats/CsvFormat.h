#pragma once

#include <memory>

#include "RowFormat.h"

namespace reader {

// A null selection selects everything. `forSpreadsheets` puts an apostrophe before texts that a spreadsheet
// would run as a formula (they begin with = + - @, a tab or a carriage return).
std::unique_ptr<RowFormat> MakeCsvFormat(const Selection* selection, bool forSpreadsheets);

}  // namespace reader
