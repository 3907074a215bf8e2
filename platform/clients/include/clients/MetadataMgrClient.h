#pragma once

#include <string>

#include "ipc/LinxIpc.h"

// Requests to MetadataMgr. Observers may only ping and ask for the last tick and the log level. Results are
// 0; ENOENT or ECONNREFUSED: the process does not run; ETIMEDOUT: no answer in time; ENOTCONN: it refused the
// connection, or exited without an answer; EPROTO: the answer is too short.
class MetadataMgrClient {
 public:
  // The endpoint must outlive the client. The time-out applies to each answer.
  MetadataMgrClient(LinxIpc& ipc, int timeoutMs) : ipc_(ipc), timeoutMs_(timeoutMs) {}

  int Ping();

  // Gets the last system tick that MetadataMgr knows; 0xFFFFFFFF before the first one.
  int LastSystemTick(unsigned int& tick);

  // Both return the log level in `mask`; SetLogLevel sets it to `mask` first.
  int LogLevel(unsigned int& mask);
  int SetLogLevel(unsigned int& mask);

  // Asks MetadataMgr to copy the records of its current run from tick `first` to `last` into a new file.
  // EINVAL: the path is empty or has 1024 bytes or more. MetadataMgr does nothing else meanwhile.
  int CopyToFile(const std::string& path, unsigned int first, unsigned int last, bool& copied);

  // Shuts MetadataMgr down and waits until it has exited.
  int Quit();

 private:
  bool IsGone();
  int Ask(IpcMessage& message, unsigned int answerType, unsigned int answerSize);

  LinxIpc& ipc_;
  int timeoutMs_;
};
