#pragma once

#include <string>

namespace bench {

// Lists of the events that the bench sent to MetadataMgr, to compare with a recording. Each process writes
// PROCESS.log in the directory that the environment variable names. One line is one event: its name and its
// values in wire order.

constexpr const char* kSentDirectoryVariable = "BENCH_SENT";

// Appends a line. Does nothing when the variable is not set.
void LogSent(const std::string& process, const std::string& line);

}  // namespace bench
