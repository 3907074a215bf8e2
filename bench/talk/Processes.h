#pragma once

#include <cstdint>
#include <string>

namespace bench {

// Names of the endpoints of the bench and of the system's processes.

// The director's endpoint.
extern const std::string kBenchName;

// The endpoint name of a process; empty for an unknown number.
const std::string& ProcessName(std::uint32_t process);

// The names of these two.
const std::string& MetadataMgrName();
const std::string& StateMgrName();

// Reads a process, given by its name or by any number. False when the word is neither.
bool ReadProcess(const std::string& word, std::uint32_t& process);

}  // namespace bench
