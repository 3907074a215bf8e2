#include "ShutDown.h"

#include <csignal>

#include "Processes.h"
#include "system/BigEndian.h"

namespace bench {

void ShutDown::Run() {
  report_.EndDrive();
  vehicle_.StartNoMore();
  (void)vehicle_.Processes().SignalAll(SIGCONT);
  if (const Child* metadataMgr = vehicle_.Processes().Find(MetadataMgrName())) {
    peakMemoryKb_ = bench::PeakMemoryKb(metadataMgr->id);
  }
  StopThroughStateMgr();
  EndUnannounced();
  EndLeftovers();
}

void ShutDown::StopThroughStateMgr() {
  const std::chrono::milliseconds deadline = FromSeconds(options_.stopDeadlineSeconds);
  std::string payload(4, '\0');
  PutU32(reinterpret_cast<unsigned char*>(payload.data()), static_cast<std::uint32_t>(deadline.count()));
  if (SendMessage(vehicle_.Ipc(), StateMgrName(), BenchMsg_StopSystem, payload) != 0) return;
  // One deadline for MetadataMgr, then one for all other processes.
  const auto end = Vehicle::Clock::now() + 2 * deadline + Vehicle::kEndTimeout;
  if (!vehicle_.ReceiveUntil(end, [this] { return news_.AllStopped(); })) {
    report_.Problem("StateMgr did not finish the shut-down" + vehicle_.SeeLog(StateMgrName()));
  }
  (void)SendMessage(vehicle_.Ipc(), StateMgrName(), LinxIpc::kShutdownNotice);
}

// The state manager does not know processes that are still starting.
void ShutDown::EndUnannounced() {
  for (const auto& [name, stage] : vehicle_.Progress()) {
    if (stage == Stages::Stage::kAbsent) vehicle_.Processes().Signal(name, SIGTERM);
  }
}

void ShutDown::EndLeftovers() {
  const auto allEnded = [this] { return vehicle_.Processes().AllEnded(); };
  const auto endsInTime = [&] {
    return vehicle_.ReceiveUntil(Vehicle::Clock::now() + Vehicle::kEndTimeout, allEnded);
  };
  struct Blow {
    int signal;
    const char* name;
  };
  for (const Blow& blow : {Blow{SIGTERM, "SIGTERM"}, Blow{SIGKILL, "SIGKILL"}}) {
    if (endsInTime()) return;
    const std::string names = vehicle_.Processes().SignalAll(blow.signal);
    report_.Problem("still running, sent " + std::string(blow.name) + ":" + names);
  }
  if (!endsInTime()) report_.Problem("a process cannot be ended");
}

}  // namespace bench
