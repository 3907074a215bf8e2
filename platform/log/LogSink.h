#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "os/Descriptor.h"

// Writes log lines to an open descriptor or to a datagram socket in the file system. Never blocks; refuses a
// line that the receiver does not take whole at once.
class LogSink {
 public:
  // Writes to `fd`; the caller keeps ownership. Once `fd` was found closed, the sink refuses every line, even
  // after the number is reused.
  explicit LogSink(int fd);
  // Sends to the datagram socket at `socketPath`. Reconnects when the receiver is gone, at most once a
  // second.
  explicit LogSink(std::string socketPath);
  LogSink(const LogSink&) = delete;
  LogSink& operator=(const LogSink&) = delete;

  bool Connected() const { return fd_ >= 0; }

  // True when the receiver took the whole line.
  bool Write(std::string_view line);

 private:
  bool Put(std::string_view text);
  bool Reconnect();

  const std::string socketPath_;  // empty: writes to a descriptor
  os::Descriptor socket_;
  int fd_ = -1;           // the socket, or the caller's descriptor
  bool midLine_ = false;  // the receiver took only the start of the last line
  std::int64_t nextConnectMs_ = 0;
};
