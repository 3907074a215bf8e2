#pragma once

#include "Gaps.h"
#include "JsonWriter.h"
#include "RunSummary.h"

namespace reader {

// Functions that write members of the current object. metadata(1) documents the names, so they must not
// change. Times are UTC texts, or null if unknown.
void WriteTime(const char* name, std::int64_t utcMs, JsonWriter& json);
// "source", "table", "usualMs", "count", "totalMs", "gaps" with "from", "to" and "ms".
void WriteGaps(const std::vector<Gaps::Source>& sources, std::int64_t leastMs, JsonWriter& json);
// "losses" with "table", "count", "fromTick", "toTick".
void WriteLosses(const RunSummary& summary, JsonWriter& json);
// What `info` shows of a run.
void WriteRun(const Run& run, const RunSummary& summary, const std::vector<Gaps::Source>& gaps,
              JsonWriter& json);

}  // namespace reader
