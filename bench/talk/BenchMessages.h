#pragma once

#include <string>

#include "Words.h"
#include "ipc/LinxIpc.h"

namespace bench {

// The messages among the processes of the bench, over the system's own IPC.
enum BenchMsg : unsigned int {
  BenchMsg_Do = 30720,           // to a performer, or from a terminal to the director: words of a command
  BenchMsg_Done = 30721,         // its answer: byte 0: 1 done, 0 failed; then a text
  BenchMsg_News = 30722,         // state manager to director: byte 0: News; then "PROCESS EVENT"
  BenchMsg_StopSystem = 30723,   // director to state manager: 32-bit time in ms that a process has to answer
  BenchMsg_Died = 30724,         // director to state manager: name of a process that has died
  BenchMsg_DriveBegins = 30725,  // director to servers: DriveClock::Text
  BenchMsg_Said = 30726          // a process to the director: an event for people
};

// The news of the state manager.
enum class News : unsigned char {
  kReady,       // the state manager takes requests
  kStep,        // a process went a step to full run
  kFullRun,     // a process was told full run
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

// Sends a message. Results as those of LinxIpc::Notify.
int SendMessage(LinxIpc& ipc, const std::string& peer, unsigned int type, const std::string& payload = {});

// The payload as text, from the byte `first` on.
std::string TextOf(const IpcMessage& message, std::size_t first = 0);

// Sends `request` to a peer and waits for a message of `answerType` from it. Answers that came earlier are
// dropped. The outcome's text says how long the answer took, or why there is none.
Outcome Request(LinxIpc& ipc, const std::string& peer, IpcMessage& request, unsigned int answerType,
                IpcMessage& answer, int timeoutMs = kAnswerTimeoutMs);

// Asks a process of the bench to do a command, and waits for the outcome.
Outcome Ask(LinxIpc& ipc, const std::string& performer, const Words& words, int timeoutMs = kAnswerTimeoutMs);

// Answers the BenchMsg_Do that is the current message.
void Answer(LinxIpc& ipc, const Outcome& outcome, const std::string& asker);

}  // namespace bench
