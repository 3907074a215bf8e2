#pragma once

#include <string>

#include "ipc/LinxIpc.h"

// Questions to the metadata manager, which every process may ask. Results are 0; ENOENT or ECONNREFUSED:
// it is not there; ETIMEDOUT: it did not answer in time; ENOTCONN: it ended without an answer; EPROTO:
// its answer is too short.
class MetadataMgrClient {
 public:
  // The endpoint must outlive the client. The time-out is for each answer.
  MetadataMgrClient(LinxIpc& ipc, int timeoutMs) : ipc_(ipc), timeoutMs_(timeoutMs) {}

  int Ping();

  // The last system tick that it knows; 0xFFFFFFFF when there was none yet.
  int LastSystemTick(unsigned int& tick);

  // Its log level; the second sets it first.
  int LogLevel(unsigned int& mask);
  int SetLogLevel(unsigned int& mask);

  // Has it copy what it recorded in its current run from the tick `first` to `last` into a new file, whose
  // path has less than 1024 bytes (else EINVAL). Nothing else happens there meanwhile.
  int CopyToFile(const std::string& path, unsigned int first, unsigned int last, bool& copied);

  // Has it shut down, and waits for it to be gone.
  int Quit();

 private:
  int Ask(IpcMessage& message, unsigned int answerType, unsigned int answerSize);

  LinxIpc& ipc_;
  int timeoutMs_;
};
