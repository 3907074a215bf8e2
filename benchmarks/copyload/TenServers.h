#pragma once

#include <memory>
#include <vector>

#include "ipc/LinxIpc.h"
#include "support/Child.h"

// The result of one server.
struct Published {
  const char* server;
  long notices = 0;
  long lost = 0;              // dropped because the process did not take them in time
  long mostWaitingBytes = 0;  // in the server's queue
};

// The ten servers that the process subscribes to, each a process of its own with the real publishing side.
// The state manager among them leads the process to full run.
class TenServers {
 public:
  // Starts the servers. Return once they can be reached.
  TenServers();
  ~TenServers();
  TenServers(const TenServers&) = delete;
  TenServers& operator=(const TenServers&) = delete;

  // Waits until the state manager has told full run.
  void AwaitFullRun() const;
  // Lets each server publish one item at this rate.
  static void Begin(LinxIpc& ipc, unsigned int perSecond);
  // Stops the publishing; returns when all that was published has left the servers.
  static std::vector<Published> End(LinxIpc& ipc);

 private:
  void AwaitByte() const;

  int told_[2] = {-1, -1};  // pipe with a byte for each open endpoint, and one for full run
  std::vector<std::unique_ptr<Child>> children_;
};

// Sends a message, waiting for room. Ends the program on failure.
void Send(LinxIpc& from, const std::string& to, unsigned int type, std::string payload = {});
// Prints an error and ends the program unless `holds`.
void Need(bool holds, const char* what);
