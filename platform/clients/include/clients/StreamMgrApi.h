#pragma once

#include <string>

#include "ipc/LinxIpc.h"

// Questions to the stream manager, which writes the video.
class StreamMgrApi {
 public:
  // The id of the recording event that is being written, at most 255 bytes; empty when none is,
  // when there is no stream manager or it ends meanwhile (at once in both cases), and when it does
  // not answer within `timeoutMs`.
  static std::string CurrentlyRecordingREID(LinxIpc& ipc, int timeoutMs);
};
