#pragma once

#include <span>
#include <string>

#include "Words.h"
#include "system/Servers.h"

namespace bench {

// The processes of the bench vehicle except the state manager: the stream manager and the servers of
// system/Servers.h.
std::span<const e_Process> Roles();

// Runs a role or the state manager, which leads the `expected` processes. Returns the exit status.
int RunRole(const std::string& name, const Words& expected);

}  // namespace bench
