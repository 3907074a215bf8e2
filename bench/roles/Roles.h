#pragma once

#include <memory>
#include <span>
#include <string>

#include "Role.h"
#include "Words.h"
#include "system/Process.h"

// The processes of the bench vehicle but the state manager. A further one is a row here and rows
// among the verbs; a further server is rows of Publications.cpp besides.
struct RoleRow {
  e_Process process;
  std::unique_ptr<Role> (*make)(e_Process process);
};

std::span<const RoleRow> Roles();

// Runs one of them, or the state manager, which is to expect the processes of these names. Returns
// the exit status.
int RunRole(const std::string& name, const Words& expected);
