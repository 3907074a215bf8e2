#pragma once

#include <string>

// What the processes of the bench sent to MetadataMgr, as text to compare a recording with: a file
// PROCESS.log each, in the directory that the environment variable names; one line an event, what
// it is and its values in the order in which they travel.

constexpr const char* kSentDirectoryVariable = "BENCH_SENT";

// Adds a line; nothing where the variable is not set.
void LogSent(const std::string& process, const std::string& line);
