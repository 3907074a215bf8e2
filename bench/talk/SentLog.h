#pragma once

#include <string>

namespace bench {

// Lists of what the processes of the bench sent to MetadataMgr, for comparison with a recording: a file
// PROCESS.log for each, in the directory that the environment variable names. One line is one event: its name
// and its values in the order in which they travel.

constexpr const char* kSentDirectoryVariable = "BENCH_SENT";

// Adds a line. Does nothing when the variable is not set.
void LogSent(const std::string& process, const std::string& line);

}  // namespace bench
