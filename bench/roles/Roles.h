#pragma once

#include <span>
#include <string>

#include "Words.h"
#include "system/Process.h"

namespace bench {

// The processes of the bench vehicle except the state manager: the stream manager, and each server in
// system/Servers.h.
std::span<const e_Process> Roles();

// Runs one of them, or the state manager, which then expects the processes named. Returns the exit status.
int RunRole(const std::string& name, const Words& expected);

}  // namespace bench
