#pragma once

#include <memory>
#include <vector>

#include "Output.h"
#include "Position.h"
#include "RowFormat.h"

namespace reader {

// Writes the records of `range` in each of the formats, one format after the other. A null selection selects
// everything. `beside` as in Progress. Returns false if a write failed.
bool WriteRows(const std::vector<Run>& runs, const Range& range, const Selection* selection,
               const std::vector<std::unique_ptr<RowFormat>>& formats, bool beside, Output& out,
               Messages& messages);

}  // namespace reader
