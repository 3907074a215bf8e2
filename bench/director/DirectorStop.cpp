#include <csignal>

#include "Director.h"
#include "Processes.h"
#include "system/BigEndian.h"

// How a run is ended.

void Director::StopAll() {
  stopping_ = true;
  lateStarts_.clear();
  (void)children_.SignalAll(SIGCONT);
  report_.EndDrive();
  if (const Child* metadataMgr = children_.Find(MetadataMgrName())) {
    peakMemoryKb_ = PeakMemoryKb(metadataMgr->id);
  }
  const std::chrono::milliseconds deadline = FromSeconds(options_.stopDeadlineSeconds);
  std::string payload(4, '\0');
  PutU32(reinterpret_cast<unsigned char*>(payload.data()), static_cast<std::uint32_t>(deadline.count()));
  if (SendMessage(ipc_, StateMgrName(), BenchMsg_StopSystem, payload) == 0) {
    // First MetadataMgr, then the others together.
    const bool stopped =
        ReceiveUntil(Clock::now() + 2 * deadline + kEndTimeout, [this] { return allStopped_; });
    if (!stopped) report_.Problem("StateMgr did not finish the shut-down" + Log(StateMgrName()));
    (void)SendMessage(ipc_, StateMgrName(), LinxIpc::kShutdownNotice);
  }
  EndUnannounced();
  EndLeftovers();
}

// The state manager does not know yet of a process that is just starting.
void Director::EndUnannounced() {
  for (const auto& [name, stage] : stages_) {
    if (stage == Stage::kAbsent) children_.Signal(name, SIGTERM);
  }
}

void Director::EndLeftovers() {
  const auto allEnded = [this] { return children_.AllEnded(); };
  struct Blow {
    int signal;
    const char* name;
  };
  for (const Blow& blow : {Blow{SIGTERM, "SIGTERM"}, Blow{SIGKILL, "SIGKILL"}}) {
    if (ReceiveUntil(Clock::now() + kEndTimeout, allEnded)) return;
    signalled_ = true;
    report_.Problem("still running, sent " + std::string(blow.name) + ":" + children_.SignalAll(blow.signal));
  }
  if (!ReceiveUntil(Clock::now() + kEndTimeout, allEnded)) report_.Problem("a process cannot be ended");
}

// One that is stopped on its way to full run ends with failure, as it should.
bool Director::MustEndWell(const std::string& process) const {
  return !stages_.Contains(process) || stages_.IsAt(process, Stage::kFullRun);
}
