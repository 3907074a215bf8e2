#include "StopProcesses.h"

#include <poll.h>

#include <cerrno>
#include <chrono>
#include <vector>

#include "Numbers.h"
#include "system/Messages.h"

namespace bench {

namespace {

using Clock = std::chrono::steady_clock;

int MsUntil(Clock::time_point end) {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
  return left < 0 ? 0 : static_cast<int>(left);
}

std::string MsSince(Clock::time_point begin) {
  return Milliseconds(std::chrono::duration<double, std::milli>(Clock::now() - begin).count());
}

// Repeats the notice while the process accepts no message.
bool AskToStop(LinxIpc& ipc, const std::string& process, Clock::time_point end) {
  int error = 0;
  while ((error = SendMessage(ipc, process, LinxIpc::kShutdownNotice)) == EAGAIN && Clock::now() < end)
    (void)poll(nullptr, 0, 1);
  return error == 0;
}

}  // namespace

void StopProcesses(LinxIpc& ipc, Words processes, int timeoutMs, const Tell& tell) {
  const Clock::time_point begin = Clock::now();
  const Clock::time_point end = begin + std::chrono::milliseconds(timeoutMs);
  std::erase_if(processes, [&](const std::string& process) {
    if (AskToStop(ipc, process, end)) return false;
    tell(News::kSilent, process, "is not there to be shut down");
    return true;
  });
  IpcMessage answer;
  while (!processes.empty() &&
         ipc.Receive(MsUntil(end), StateMgrProcessMsg_ShutdownResponse, LinxIpc::emptyString, &answer) == 0) {
    if (std::erase(processes, answer.GetSender()) == 0) continue;
    tell(News::kStopped, answer.GetSender(), "answered the shut-down after " + MsSince(begin));
  }
  for (const std::string& process : processes) {
    tell(News::kSilent, process, "did not answer the shut-down within " + Milliseconds(timeoutMs));
  }
}

}  // namespace bench
