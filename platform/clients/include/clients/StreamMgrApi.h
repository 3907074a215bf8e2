#pragma once

#include <string>

#include "ipc/LinxIpc.h"

// Questions to the stream manager, which writes the video.
class StreamMgrApi {
 public:
  // The id of the recording event that is being written, at most 255 bytes. Empty when none is written, when
  // there is no stream manager, it ends or a shutdown notice comes (at once in these cases), and when no
  // answer comes within `timeoutMs`.
  static std::string CurrentlyRecordingREID(LinxIpc& ipc, int timeoutMs);
};
