#pragma once

#include "Gaps.h"
#include "JsonWriter.h"
#include "RunSummary.h"

namespace reader {

// Members of an object; the names are documented in metadata(1) and stay. Times are UTC texts, null where
// they are not known.
void WriteTime(const char* name, std::int64_t utcMs, JsonWriter& json);
// "source", "table", "usualMs", "count", "totalMs", "gaps" with "from", "to" and "ms".
void WriteGaps(const std::vector<Gaps::Source>& sources, std::int64_t leastMs, JsonWriter& json);
// "losses" with "table", "count", "fromTick", "toTick".
void WriteLosses(const RunSummary& summary, JsonWriter& json);
// What `info` tells of a run.
void WriteRun(const Run& run, const RunSummary& summary, const std::vector<Gaps::Source>& gaps,
              JsonWriter& json);

}  // namespace reader
