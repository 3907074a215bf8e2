#include "ipc/LinxServerNameList.h"

#include <algorithm>
#include <array>

#include "system/Process.h"

namespace {

struct NamedProcess {
  unsigned int process;
  std::string name;
};

const std::array<NamedProcess, 12>& Processes() {
  static const std::array<NamedProcess, 12> processes{{
      {e_Process_StateMgr, "StateMgr"},
      {e_Process_ConfigMgr, "ConfigMgr"},
      {e_Process_Fpga, "Fpga"},
      {e_Process_RadarHal, "RadarHal"},
      {e_Process_MicMgr, "MicMgr"},
      {e_Process_GpsHal, "GpsHal"},
      {e_Process_AccelHal, "AccelHal"},
      {e_Process_TempHal, "TempHal"},
      {e_Process_MetadataMgr, "MetadataMgr"},
      {e_Process_StreamMgr, "StreamMgr"},
      {e_Process_VideoMgr, "VideoMgr"},
      {e_Process_ExternalMgr, "ExternalMgr"},
  }};
  return processes;
}

const std::string kUnknown;

}  // namespace

const LinxServerNameList& LinxServerNameList::Instance() {
  static const LinxServerNameList instance;
  return instance;
}

const std::string& LinxServerNameList::Name(unsigned int process) const {
  const auto& all = Processes();
  const auto found = std::find_if(all.begin(), all.end(),
                                  [process](const NamedProcess& known) { return known.process == process; });
  return found == all.end() ? kUnknown : found->name;
}
