#include <csignal>

#include "Director.h"

using std::chrono::milliseconds;

// What happens to a server while a drive runs.

bool Director::IsRunning(const std::string& server) const {
  const Child* child = children_.Find(server);
  return child != nullptr && !child->ended;
}

Outcome Director::Kill(const std::string& server) {
  if (!stages_.Contains(server)) return {false, server + " leads the others, or does not run"};
  killed_.insert(server);
  children_.Signal(server, SIGKILL);
  const bool ended = ReceiveUntil(Clock::now() + kEndTimeout, [&] { return !IsRunning(server); });
  return {ended, ended ? "dead" : "does not die"};
}

Outcome Director::Start(const std::string& server) {
  if (IsRunning(server)) return {false, "it runs"};
  killed_.erase(server);
  lateStarts_.erase(server);
  if (!StartRole(server)) return {false, "it cannot be started"};
  const auto atFullRun = [&] { return stages_.IsAt(server, Stage::kFullRun); };
  if (ReceiveUntil(Clock::now() + milliseconds(kAnswerTimeoutMs), atFullRun)) return {true, "at full run"};
  return {false, "does not come to full run"};
}

Outcome Director::Signal(const std::string& server, int signal) {
  if (!IsRunning(server)) return {false, "it does not run"};
  children_.Signal(server, signal);
  return {true, signal == SIGSTOP ? "stopped" : "goes on"};
}
