#pragma once

#include <sys/types.h>

#include <string>

// The total cost of receiving: CPU time and voluntary waits of the receiving process.
struct Taken {
  double cpuSeconds = 0;
  double waits = 0;
};

// A process that receives `events` events from ten senders, with its own directory.
class ReceiverProcess {
 public:
  enum class Kind {
    kBare,  // waits for ten sockets with epoll, drops each event
    kOurs,  // runs the manager with all handlers in the main loop until all events are committed
    kIdle   // runs the manager for `events` seconds
  };
  ReceiverProcess(Kind kind, const std::string& directory, int events);

  std::string Endpoint() const { return directory_ + "/MetadataMgr"; }
  pid_t Pid() const { return pid_; }
  Taken Wait() const;

 private:
  std::string directory_;
  int result_ = -1;
  pid_t pid_ = -1;
};
