#pragma once

#include <functional>

#include "Commands.h"
#include "JsonWriter.h"
#include "Messages.h"
#include "Runs.h"

namespace reader {

// Prints one run as text, or as one value of a JSON array.
using PrintText = std::function<void(const Run& run, Messages& messages, std::string& out)>;
using PrintJson = std::function<void(const Run& run, Messages& messages, JsonWriter& json)>;

// Prints each run, as text or as {"runs":[...]}. Returns the exit status.
int PrintRuns(const Recordings& recordings, bool asJson, const PrintText& text, const PrintJson& json);

}  // namespace reader
