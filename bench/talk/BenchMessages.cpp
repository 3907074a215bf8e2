#include "BenchMessages.h"

#include <cerrno>
#include <chrono>
#include <cstring>

#include "Numbers.h"

namespace bench {

namespace {

using Clock = std::chrono::steady_clock;

std::string WhyNotSent(const std::string& peer, int error) {
  if (error == ENOENT || error == ECONNREFUSED) return peer + " is not there";
  return "cannot send to " + peer + ": " + std::strerror(error);
}

}  // namespace

int SendMessage(LinxIpc& ipc, const std::string& peer, unsigned int type, const std::string& payload) {
  IpcMessage message;
  std::string bytes = payload;
  const int error = message.Allocate(type, static_cast<unsigned int>(bytes.size()), bytes.data());
  return error != 0 ? error : ipc.Notify(peer, message, true);
}

std::string TextOf(const IpcMessage& message, std::size_t first) {
  if (message.Size() <= first) return {};
  return {message.DataPtr() + first, message.DataPtr() + message.Size()};
}

Outcome Request(LinxIpc& ipc, const std::string& peer, IpcMessage& request, unsigned int answerType,
                IpcMessage& answer, int timeoutMs) {
  while (ipc.Receive(0, answerType, peer, &answer) == 0) {
  }
  const Clock::time_point sent = Clock::now();
  if (const int error = ipc.Notify(peer, request, true); error != 0) return {false, WhyNotSent(peer, error)};
  if (ipc.Receive(timeoutMs, answerType, peer, &answer) != 0) {
    return {false, peer + " did not answer within " + Milliseconds(timeoutMs)};
  }
  return {true, Milliseconds(std::chrono::duration<double, std::milli>(Clock::now() - sent).count())};
}

Outcome Ask(LinxIpc& ipc, const std::string& performer, const Words& words, int timeoutMs) {
  std::string text = JoinWords(words);
  IpcMessage request;
  IpcMessage answer;
  if (request.Allocate(BenchMsg_Do, static_cast<unsigned int>(text.size()), text.data()) != 0) {
    return {false, "too many words"};
  }
  Outcome asked = Request(ipc, performer, request, BenchMsg_Done, answer, timeoutMs);
  if (!asked.ok) return asked;
  return {answer.Size() > 0 && answer.DataPtr()[0] == 1, TextOf(answer, 1)};
}

void Answer(LinxIpc& ipc, const Outcome& outcome, const std::string& asker) {
  (void)SendMessage(ipc, asker, BenchMsg_Done, (outcome.ok ? '\1' : '\0') + outcome.text);
}

}  // namespace bench
