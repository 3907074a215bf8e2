#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "os/Descriptor.h"

// Where log lines go: an open descriptor, or a datagram socket in the file system. Nothing here
// blocks; a line that cannot be taken whole at once is refused.
class LogSink {
 public:
  // Writes to `fd`, which stays the caller's. A descriptor that is closed refuses every line, also
  // when its number is in use again later.
  explicit LogSink(int fd);
  // Sends to the datagram socket at `socketPath`. When its reader is gone the connection is made
  // anew, tried at most once a second.
  explicit LogSink(std::string socketPath);
  LogSink(const LogSink&) = delete;
  LogSink& operator=(const LogSink&) = delete;

  bool Connected() const { return fd_ >= 0; }

  // True when the whole line was taken.
  bool Write(std::string_view line);

 private:
  bool Put(std::string_view text);
  bool Reconnect();

  const std::string socketPath_;  // empty: a descriptor
  os::Descriptor socket_;
  int fd_ = -1;           // the socket, or the caller's descriptor
  bool midLine_ = false;  // only the beginning of the last line was taken
  std::int64_t nextConnectMs_ = 0;
};
