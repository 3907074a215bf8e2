#pragma once

#include <string>

#include "Words.h"
#include "ipc/LinxIpc.h"

namespace bench {

// Messages between the processes of the bench, over the system's IPC.
enum BenchMsg : unsigned int {
  BenchMsg_Do = 30720,           // to a performer, or from a terminal to the director: a command
  BenchMsg_Done = 30721,         // the answer: byte 0: 1 done, 0 failed; then a text
  BenchMsg_News = 30722,         // state manager to director: byte 0: News; then "PROCESS EVENT"
  BenchMsg_StopSystem = 30723,   // director to state manager: time-out for each process, 32 bits, ms
  BenchMsg_Died = 30724,         // director to state manager: name of the dead process
  BenchMsg_DriveBegins = 30725,  // director to servers: DriveClock::Text
  BenchMsg_Said = 30726          // process to director: an event for people
};

// News from the state manager.
enum class News : unsigned char {
  kReady,       // the state manager accepts requests
  kStep,        // a process reached the next step to full run
  kFullRun,     // full run was sent to a process
  kFailed,      // a process cannot start
  kStopped,     // a process answered the shut-down
  kSilent,      // a process did not answer the shut-down
  kAllStopped,  // the shut-down is over
};

// The result of a command.
struct Outcome {
  bool ok;
  std::string text;
};

constexpr int kAnswerTimeoutMs = 2000;
constexpr int kTakenTimeoutMs = 8000;  // for MetadataMgr to take an event while its disk stalls

// Sends a message. Returns the results of LinxIpc::Notify.
int SendMessage(LinxIpc& ipc, const std::string& peer, unsigned int type, const std::string& payload = {});

// The payload from byte `first` on, as text.
std::string TextOf(const IpcMessage& message, std::size_t first = 0);

// Sends `request` to a peer and waits for its message of `answerType`. Drops answers that arrived earlier.
// The text of the outcome is the time that the answer took, or the error.
Outcome Request(LinxIpc& ipc, const std::string& peer, IpcMessage& request, unsigned int answerType,
                IpcMessage& answer, int timeoutMs = kAnswerTimeoutMs);

// Sends a command to a process of the bench, and waits for the outcome.
Outcome Ask(LinxIpc& ipc, const std::string& performer, const Words& words, int timeoutMs = kAnswerTimeoutMs);

// Answers the current message, a BenchMsg_Do.
void Answer(LinxIpc& ipc, const Outcome& outcome, const std::string& asker);

}  // namespace bench
