#pragma once

#include <memory>
#include <vector>

#include "Instant.h"
#include "Output.h"
#include "RowFormat.h"

namespace reader {

// Writes the records of a range of runs; the formats one after the other, each of them through all
// records. A null selection selects everything. `beside` as Progress. False when it could not be written.
bool WriteRows(const std::vector<Run>& runs, const Range& range, const Selection* selection,
               const std::vector<std::unique_ptr<RowFormat>>& formats, bool beside, Output& out,
               Messages& messages);

}  // namespace reader
