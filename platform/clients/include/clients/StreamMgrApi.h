#pragma once

#include <string>

#include "ipc/LinxIpc.h"

// Requests to the stream manager, which writes the video.
class StreamMgrApi {
 public:
  // Returns the id of the current recording event, at most 255 bytes. Returns an empty text when the stream
  // manager records nothing or does not answer within `timeoutMs`; at once when it does not run, when it
  // exits or when a shutdown notice arrives.
  static std::string CurrentlyRecordingREID(LinxIpc& ipc, int timeoutMs);
};
