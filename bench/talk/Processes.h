#pragma once

#include <cstdint>
#include <string>

namespace bench {

// Endpoint names of the bench and of the system's processes.

// The director's endpoint.
extern const std::string kBenchName;

// The endpoint name of a process; empty for an unknown number.
const std::string& ProcessName(std::uint32_t process);

const std::string& MetadataMgrName();
const std::string& StateMgrName();

// Reads a process from its name or any number. Returns false when the word is neither.
bool ReadProcess(const std::string& word, std::uint32_t& process);

}  // namespace bench
