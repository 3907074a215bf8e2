#pragma once

#include <sys/types.h>

#include <string>

// The cost of receiving: CPU time and voluntary waits of the receiving process, in all.
struct Taken {
  double cpuSeconds = 0;
  double waits = 0;
};

// A process that receives in a directory of its own, from ten senders, until it has had so many events.
class ReceiverProcess {
 public:
  enum class Kind {
    kBare,  // waits for ten sockets with epoll, receives and drops
    kOurs,  // the manager with the handlers of all kinds, in the program's loop, until all is committed
    kIdle   // the same for some seconds, of which `events` is the number
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
