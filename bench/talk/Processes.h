#pragma once

#include <cstdint>
#include <string>

// Names of the endpoints of the bench and of the system's processes.

// The director's endpoint.
extern const std::string kBenchName;

// The endpoint name of a process; empty for an unknown number.
const std::string& ProcessName(std::uint32_t process);

// Those that the bench itself deals with.
const std::string& MetadataMgrName();
const std::string& StateMgrName();

// The number of a process that is given by its name, or by its number, which need not be one in
// use. False when the word is neither.
bool ReadProcess(const std::string& word, std::uint32_t& process);
