#include "Roles.h"

#include <algorithm>
#include <cstdio>

#include "GpsHal.h"
#include "Misc/ProcessInitializer.h"
#include "Processes.h"
#include "Server.h"
#include "StateMgr.h"
#include "StreamMgr.h"

std::string gStateMgrName;

namespace bench {

namespace {

constexpr LogSource log{"Role"};

template <typename R>
std::unique_ptr<Role> Make(e_Process process) {
  if constexpr (std::is_constructible_v<R, e_Process>) return std::make_unique<R>(process);
  if constexpr (std::is_default_constructible_v<R>) return std::make_unique<R>();
}

constexpr RoleRow kRoles[] = {
    {e_Process_StreamMgr, Make<StreamMgr>}, {e_Process_ConfigMgr, Make<Server>},
    {e_Process_Fpga, Make<Server>},         {e_Process_GpsHal, Make<GpsHal>},
    {e_Process_RadarHal, Make<Server>},     {e_Process_MicMgr, Make<Server>},
    {e_Process_VideoMgr, Make<Server>},     {e_Process_AccelHal, Make<Server>},
    {e_Process_TempHal, Make<Server>},      {e_Process_ExternalMgr, Make<Server>},
};

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
