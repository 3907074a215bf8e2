#include "Roles.h"

#include <algorithm>
#include <cstdio>

#include "Misc/ProcessInitializer.h"
#include "Processes.h"
#include "StateMgr.h"
#include "StreamMgr.h"

std::string gStateMgrName;

namespace {

constexpr LogSource log{"Role"};

template <typename R>
std::unique_ptr<Role> Make() {
  return std::make_unique<R>();
}

constexpr RoleRow kRoles[] = {
    {e_Process_StreamMgr, Make<StreamMgr>},
};

int Run(const RoleRow& row) {
  const std::unique_ptr<Role> role = row.make();
  ProcessInitializer<Role> initializer(*role, row.process);
  if (!initializer.Init(ProcessName(row.process), LogClient::Instance().Level())) return 1;
  while (!role->Stopped()) (void)initializer.Ipc().Receive(-1, 0, LinxIpc::emptyString, nullptr);
  return 0;
}

}  // namespace

std::span<const RoleRow> Roles() {
  return kRoles;
}

int RunRole(const std::string& name, const Words& expected) {
  gStateMgrName = ProcessName(e_Process_StateMgr);
  if (name == gStateMgrName) return StateMgr(expected).Run();
  const auto row = std::find_if(std::begin(kRoles), std::end(kRoles),
                                [&name](const RoleRow& known) { return ProcessName(known.process) == name; });
  if (row != std::end(kRoles)) return Run(*row);
  log(kLogError, "There is no role ", name);
  return 2;
}
