#pragma once

#include <string>

#include "Words.h"
#include "ipc/LinxIpc.h"

// How the processes of the bench talk among themselves, over the system's own IPC.
enum BenchMsg : unsigned int {
  BenchMsg_Do = 30720,          // to a performer, or from a terminal to the director: words of a command
  BenchMsg_Done = 30721,        // its answer: byte 0: 1 if it was done, else 0; then a text
  BenchMsg_News = 30722,        // state manager to director: byte 0: News; then "PROCESS what happened"
  BenchMsg_StopSystem = 30723,  // director to state manager: 32-bit time in ms that a process has to answer
  BenchMsg_Died = 30724,        // director to state manager: name of a process that has died
  BenchMsg_DriveBegins = 30725  // director to servers: "BEGIN SPEED" (Publisher.cpp)
};

// What the state manager tells.
enum class News : unsigned char {
  kReady,       // it takes requests
  kStep,        // of a process on its way to full run
  kFullRun,     // of a process
  kFailed,      // a process cannot start
  kStopped,     // a process answered the shut-down
  kSilent,      // a process did not
  kAllStopped,  // none is waited for any more
};

// How something asked for ended.
struct Outcome {
  bool ok;
  std::string text;
};

constexpr int kAnswerTimeoutMs = 2000;

// Sends an empty message or one with a payload; 0 or what Notify says.
int SendMessage(LinxIpc& ipc, const std::string& peer, unsigned int type, const std::string& payload = {});

// The payload as text, from the byte `first` on.
std::string TextOf(const IpcMessage& message, std::size_t first = 0);

// Sends `request` to a peer and waits for a message of `answerType` from it; one that came earlier
// is none. The outcome's text is why there is no answer, or how long it took.
Outcome Request(LinxIpc& ipc, const std::string& peer, IpcMessage& request, unsigned int answerType,
                IpcMessage& answer, int timeoutMs = kAnswerTimeoutMs);

// Has a process of the bench do something.
Outcome Ask(LinxIpc& ipc, const std::string& performer, const Words& words, int timeoutMs = kAnswerTimeoutMs);

// Answers the BenchMsg_Do that is the current message.
void Answer(LinxIpc& ipc, const Outcome& outcome, const std::string& asker);

// "12 ms", with decimals where they matter.
std::string Milliseconds(double ms);
