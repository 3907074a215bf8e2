#pragma once

#include <string>

#include "Role.h"

// The process that writes the video: knows which recording event is being written, tells
// MetadataMgr when one starts or stops, and answers who asks for it.
class StreamMgr : public Role {
 public:
  StreamMgr();

 private:
  void Prepare(LinxIpc& ipc) override;
  static void GetRecordingHandler(LinxIpc* ipc, void* self);

  Outcome Start(const Words& arguments);
  Outcome Stop();
  Outcome Tell(bool start, const std::string& text);

  std::string recording_;  // empty: none
  unsigned int recordings_ = 0;
};
