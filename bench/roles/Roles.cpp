#include "Roles.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "GpsHal.h"
#include "Misc/ProcessInitializer.h"
#include "Processes.h"
#include "Server.h"
#include "StateMgr.h"
#include "StreamMgr.h"
#include "system/Servers.h"

std::string gStateMgrName;

namespace bench {

namespace {

constexpr LogSource log{"Role"};

template <typename R>
std::unique_ptr<Role> Make(e_Process process) {
  if constexpr (std::is_constructible_v<R, e_Process>) return std::make_unique<R>(process);
  if constexpr (std::is_default_constructible_v<R>) return std::make_unique<R>();
}

// The stream manager, and the servers but the state manager, which leads all others.
constexpr auto kRoles = [] {
  std::array<RoleRow, std::size(servers::kAll)> rows{{{e_Process_StreamMgr, Make<StreamMgr>}}};
  std::size_t count = 1;
  for (const ServerRow& server : servers::kAll) {
    if (server.process == e_Process_StateMgr) continue;
    rows[count++] = {server.process, server.process == e_Process_GpsHal ? Make<GpsHal> : Make<Server>};
  }
  return rows;
}();

int Run(const RoleRow& row) {
  const std::unique_ptr<Role> role = row.make(row.process);
  ProcessInitializer<Role> initializer(*role, row.process);
  if (!initializer.Init(ProcessName(row.process), LogClient::Instance().Level())) return 1;
  while (!role->Stopped()) {
    (void)initializer.Ipc().Receive(role->WaitMs(), 0, LinxIpc::emptyString, nullptr);
    role->DoDueWork();
  }
  return 0;
}

}  // namespace

std::span<const RoleRow> Roles() {
  return kRoles;
}

int RunRole(const std::string& name, const Words& expected) {
  gStateMgrName = StateMgrName();
  if (name == gStateMgrName) return StateMgr(expected).Run();
  const auto row = std::find_if(std::begin(kRoles), std::end(kRoles),
                                [&name](const RoleRow& known) { return ProcessName(known.process) == name; });
  if (row != std::end(kRoles)) return Run(*row);
  log(kLogError, "There is no role ", name);
  return 2;
}

}  // namespace bench
