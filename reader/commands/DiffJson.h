#pragma once

#include "Comparison.h"
#include "JsonWriter.h"

namespace reader {

// Writes what two runs differ in as a JSON object. The man page lists its members.
void WriteComparison(std::int64_t run, const Comparison& comparison, JsonWriter& json);

}  // namespace reader
