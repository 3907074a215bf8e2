#pragma once

#include <memory>
#include <string>

#include "Role.h"
#include "clients/StateMgrClient.h"

namespace bench {

// The process that writes the video: follows the record starts and stops of the state manager, and answers
// requests for the current recording event. On command it sends a start or stop directly to MetadataMgr.
class StreamMgr : public Role {
 public:
  StreamMgr();

 private:
  void Prepare(LinxIpc& ipc) override;
  bool SubscribeToServers(LinxIpc& ipc, bool flag) override;
  void ProcessRestarted(LinxIpc& ipc, e_Process process) override;
  static void GetRecordingHandler(LinxIpc* ipc, void* self);
  static void RecordStartHandler(LinxIpc* ipc, void* self);
  static void RecordStopHandler(LinxIpc* ipc, void* self);

  void Begin(const std::string& id);
  Outcome Start(const Words& arguments);
  Outcome Stop();
  Outcome Tell(bool start, const std::string& text);

  std::unique_ptr<StateMgrClient> stateMgr_;
  std::string recording_;  // empty: none
  unsigned int recordings_ = 0;
};

}  // namespace bench
