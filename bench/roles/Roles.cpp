#include "Roles.h"

#include <algorithm>
#include <array>
#include <memory>

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

constexpr LogSource roleLog{"Role"};

constexpr auto kRoles = [] {
  std::array<e_Process, std::size(servers::kAll)> roles{e_Process_StreamMgr};
  std::size_t count = 1;
  for (const ServerRow& server : servers::kAll) {
    if (server.process != e_Process_StateMgr) roles[count++] = server.process;
  }
  return roles;
}();

std::unique_ptr<Role> Make(e_Process process) {
  if (process == e_Process_StreamMgr) return std::make_unique<StreamMgr>();
  if (process == e_Process_GpsHal) return std::make_unique<GpsHal>();
  return std::make_unique<Server>(process);
}

int Run(e_Process process) {
  const std::unique_ptr<Role> role = Make(process);
  ProcessInitializer<Role> initializer(*role, process);
  if (!initializer.Init(ProcessName(process), LogClient::Instance().Level())) return 1;
  while (!role->Stopped()) {
    (void)initializer.Ipc().Receive(role->WaitMs(), 0, LinxIpc::emptyString, nullptr);
    role->DoDueWork();
  }
  return 0;
}

}  // namespace

std::span<const e_Process> Roles() {
  return kRoles;
}

int RunRole(const std::string& name, const Words& expected) {
  gStateMgrName = StateMgrName();
  if (name == gStateMgrName) return StateMgr(expected).Run();
  const auto role = std::find_if(kRoles.begin(), kRoles.end(),
                                 [&name](e_Process process) { return ProcessName(process) == name; });
  if (role != kRoles.end()) return Run(*role);
  roleLog(kLogError, "There is no role ", name);
  return 2;
}

}  // namespace bench
