#pragma once

#include <string>

#include "ipc/LinxIpc.h"

// Questions to the metadata manager. Observers may ask for a ping, the last tick and the log level. Results
// are 0; ENOENT or ECONNREFUSED: the process is not there; ETIMEDOUT: it did not answer in time; ENOTCONN: it
// refused the connection, or ended without an answer; EPROTO: its answer is too short.
class MetadataMgrClient {
 public:
  // The endpoint must outlive the client. The time-out is for each answer.
  MetadataMgrClient(LinxIpc& ipc, int timeoutMs) : ipc_(ipc), timeoutMs_(timeoutMs) {}

  int Ping();

  // The last system tick that it knows; 0xFFFFFFFF when there was none yet.
  int LastSystemTick(unsigned int& tick);

  // Its log level; SetLogLevel sets it first.
  int LogLevel(unsigned int& mask);
  int SetLogLevel(unsigned int& mask);

  // Has it copy what it recorded in its current run from the tick `first` to `last` into a new file. EINVAL:
  // the path is empty or has 1024 bytes or more. The process does nothing else meanwhile.
  int CopyToFile(const std::string& path, unsigned int first, unsigned int last, bool& copied);

  // Has it shut down, and waits until it is gone.
  int Quit();

 private:
  bool IsGone();
  int Ask(IpcMessage& message, unsigned int answerType, unsigned int answerSize);

  LinxIpc& ipc_;
  int timeoutMs_;
};
