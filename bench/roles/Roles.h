#pragma once

#include <memory>
#include <span>
#include <string>

#include "Role.h"
#include "Words.h"
#include "system/Process.h"

namespace bench {

// The processes of the bench vehicle except the state manager. A further process is a row here and rows in
// VerbTable.cpp.
struct RoleRow {
  e_Process process;
  std::unique_ptr<Role> (*make)(e_Process process);
};

std::span<const RoleRow> Roles();

// Runs one of them, or the state manager, which then expects the processes named. Returns the exit status.
int RunRole(const std::string& name, const Words& expected);

}  // namespace bench
