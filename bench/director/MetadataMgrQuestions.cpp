#include "MetadataMgrQuestions.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <vector>

#include "MetadataMgrMessages.h"
#include "Processes.h"
#include "SentLog.h"
#include "clients/SubscribeClient.h"
#include "items/BoolItem.h"
#include "system/BigEndian.h"
#include "system/Messages.h"
#include "system/Process.h"
#include "system/Systick.h"

namespace {

constexpr unsigned int kFieldSize = 4;
constexpr unsigned int kLastTickSize = 8;

Outcome TooShort() {
  return {false, "the answer is too short"};
}

Outcome RequestMetadataMgr(LinxIpc& ipc, IpcMessage& request, unsigned int answerType, IpcMessage& answer) {
  return Request(ipc, MetadataMgrName(), request, answerType, answer);
}

Outcome Ping(LinxIpc& ipc) {
  IpcMessage request;
  IpcMessage answer;
  (void)request.Allocate(MetadataMgrMsg_Ping, 0, nullptr);
  Outcome asked = RequestMetadataMgr(ipc, request, MetadataMgrMsg_PingResponse, answer);
  return asked.ok ? Outcome{true, "answered in " + asked.text} : asked;
}

// At most one each 5 ms.
Outcome Pings(LinxIpc& ipc, double seconds) {
  using Clock = std::chrono::steady_clock;
  constexpr int kPauseMs = 5;
  const auto end = Clock::now() + std::chrono::duration<double>(seconds);
  std::vector<double> ms;
  IpcMessage request;
  IpcMessage answer;
  (void)request.Allocate(MetadataMgrMsg_Ping, 0, nullptr);
  while (Clock::now() < end) {
    const auto asked = Clock::now();
    Outcome outcome = RequestMetadataMgr(ipc, request, MetadataMgrMsg_PingResponse, answer);
    if (!outcome.ok) return outcome;
    ms.push_back(std::chrono::duration<double, std::milli>(Clock::now() - asked).count());
    (void)ipc.Receive(kPauseMs, MetadataMgrMsg_PingResponse, MetadataMgrName(), &answer);
  }
  if (ms.empty()) return {true, "none"};
  std::sort(ms.begin(), ms.end());
  const auto within = [&ms](std::size_t percent) {
    return Milliseconds(ms[(ms.size() - 1) * percent / 100]);
  };
  return {true, std::to_string(ms.size()) + " answered, half of them within " + within(50) + ", 90 % " +
                    within(90) + ", 99 % " + within(99) + ", longest " + within(100)};
}

Outcome Bookmark(LinxIpc& ipc) {
  IpcMessage bookmark;
  IpcMessage notice;
  const std::uint32_t tick = AllocateTick(bookmark, MetadataMgrMsg_Bookmark);
  LogSent(kBenchName, "bookmark " + std::to_string(tick));
  Outcome asked = RequestMetadataMgr(ipc, bookmark, kBookmarkNotice, notice);
  if (!asked.ok) return {false, "no bookmark notice: " + asked.text};
  BoolItem taken;
  if (!taken.DecodeMsg(notice)) return TooShort();
  return {taken.Value(),
          "bookmark notice received after " + asked.text + (taken.Value() ? "" : ", but it says false")};
}

std::string Hexadecimal(unsigned int value) {
  char text[16];
  (void)std::snprintf(text, sizeof text, "0x%x", value);
  return text;
}

Outcome LogLevel(LinxIpc& ipc, const Words& arguments) {
  IpcMessage request;
  IpcMessage answer;
  std::uint32_t wanted = 0;
  const bool set = !arguments.empty() && ReadNumber(arguments[0], wanted);
  (void)request.Allocate(set ? LogLevelMsg_Set : LogLevelMsg_Get, kFieldSize, nullptr);
  PutU32(request.DataPtr(), wanted);
  Outcome asked = RequestMetadataMgr(ipc, request, LogLevelMsg_Response, answer);
  if (!asked.ok) return asked;
  if (answer.Size() < kFieldSize) return TooShort();
  const std::uint32_t level = GetU32(answer.DataPtr());
  return {!set || level == wanted, "level now " + Hexadecimal(level) + ", answered in " + asked.text};
}

Outcome LastTick(LinxIpc& ipc) {
  IpcMessage request;
  IpcMessage answer;
  (void)request.Allocate(MetadataMgrMsg_GetLastSystemTick, 0, nullptr);
  Outcome asked = RequestMetadataMgr(ipc, request, MetadataMgrMsg_GetLastSystemTickResponse, answer);
  if (!asked.ok) return asked;
  if (answer.Size() < kLastTickSize) return TooShort();
  const std::uint32_t tick = GetU32(answer.DataPtr());
  if (answer.DataPtr()[kFieldSize] == 0) return {true, "no tick yet, answered in " + asked.text};
  const std::uint32_t age = Systick().SystemTick() - tick;
  return {true,
          "tick " + std::to_string(tick) + ", " + std::to_string(age) + " ms ago, answered in " + asked.text};
}

}  // namespace

Actions MetadataMgrActions(LinxIpc& ipc, double speed) {
  return {
      {"bookmark", [&ipc](const Words&) { return Bookmark(ipc); }},
      {"lasttick", [&ipc](const Words&) { return LastTick(ipc); }},
      {"loglevel", [&ipc](const Words& arguments) { return LogLevel(ipc, arguments); }},
      {"ping", [&ipc](const Words&) { return Ping(ipc); }},
      {"pings",
       [&ipc, speed](const Words& arguments) { return Pings(ipc, DecimalOf(arguments[0]) / speed); }},
  };
}

Outcome SubscribeToBookmarks(LinxIpc& ipc, LinxIpc::Handler handler, void* context) {
  SubscribeClient client(ipc, MetadataMgrName(), kAnswerTimeoutMs);
  BoolItem value;
  const int error = client.Subscribe(kBookmarkItem, kBookmarkNotice, value, handler, context);
  if (error == 0) return {true, "subscribed to the bookmark item"};
  return {false, std::string("cannot subscribe to MetadataMgr's bookmark item: ") + std::strerror(error)};
}
