#include "MetadataMgrQuestions.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <optional>
#include <vector>

#include "Numbers.h"
#include "Processes.h"
#include "SentLog.h"
#include "TickMessage.h"
#include "clients/MetadataMgrClient.h"
#include "clients/SubscribeClient.h"
#include "items/BoolItem.h"
#include "system/Messages.h"
#include "system/Systick.h"

namespace bench {

namespace {

using Clock = std::chrono::steady_clock;

// An item of MetadataMgr: true means that a bookmark was taken.
constexpr unsigned int kBookmarkItem = 0;
// The notification id that the bench uses for it.
constexpr unsigned int kBookmarkNotice = 30736;

double MsSince(Clock::time_point begin) {
  return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

// Describes the error of a request.
std::string WhyNot(int error) {
  const std::string& name = MetadataMgrName();
  if (error == ENOENT || error == ECONNREFUSED) return name + " is not there";
  if (error == ETIMEDOUT) return name + " did not answer within " + Milliseconds(kAnswerTimeoutMs);
  if (error == ENOTCONN) return name + " ended without an answer";
  if (error == EPROTO) return "the answer is too short";
  return "cannot ask " + name + ": " + std::strerror(error);
}

// Sends a request through the client. The outcome is `text` and the time that the answer took.
template <typename Question, typename Text>
Outcome AskClient(LinxIpc& ipc, Question question, Text text) {
  MetadataMgrClient client(ipc, kAnswerTimeoutMs);
  const auto begin = Clock::now();
  if (const int error = question(client); error != 0) return {false, WhyNot(error)};
  return {true, text() + "answered in " + Milliseconds(MsSince(begin))};
}

Outcome Ping(LinxIpc& ipc) {
  return AskClient(
      ipc, [](MetadataMgrClient& client) { return client.Ping(); }, [] { return std::string(); });
}

// Sends pings at least 5 ms apart.
Outcome Pings(LinxIpc& ipc, double seconds) {
  constexpr int kPauseMs = 5;
  const auto end = Clock::now() + std::chrono::duration<double>(seconds);
  MetadataMgrClient client(ipc, kAnswerTimeoutMs);
  IpcMessage ignored;
  std::vector<double> ms;
  while (Clock::now() < end) {
    const auto asked = Clock::now();
    if (const int error = client.Ping(); error != 0) return {false, WhyNot(error)};
    ms.push_back(MsSince(asked));
    (void)ipc.Receive(kPauseMs, MetadataMgrMsg_PingResponse, MetadataMgrName(), &ignored);
  }
  if (ms.empty()) return {true, "none"};
  std::sort(ms.begin(), ms.end());
  const auto within = [&ms](std::size_t percent) {
    return Milliseconds(ms[(ms.size() - 1) * percent / 100]);
  };
  return {true, std::to_string(ms.size()) + " answered, half of them within " + within(50) + ", 90 % " +
                    within(90) + ", 99 % " + within(99) + ", longest " + within(100)};
}

Outcome Bookmark(LinxIpc& ipc, const Words& arguments) {
  IpcMessage bookmark;
  IpcMessage notice;
  std::optional<std::uint32_t> given;
  if (!arguments.empty()) given = NumberOf(arguments[0]);
  const std::uint32_t tick = AllocateTick(bookmark, MetadataMgrMsg_Bookmark, -1, given);
  LogSent(kBenchName, "bookmark " + std::to_string(tick));
  Outcome asked = Request(ipc, MetadataMgrName(), bookmark, kBookmarkNotice, notice);
  if (!asked.ok) return {false, "no bookmark notice: " + asked.text};
  BoolItem taken;
  if (!taken.DecodeMsg(notice)) return {false, "the notice is too short"};
  return {taken.Value(),
          "bookmark notice received after " + asked.text + (taken.Value() ? "" : ", but it says false")};
}

std::string Hexadecimal(unsigned int value) {
  char text[16];
  (void)std::snprintf(text, sizeof text, "0x%x", value);
  return text;
}

Outcome LogLevel(LinxIpc& ipc, const Words& arguments) {
  const bool set = !arguments.empty();
  const unsigned int wanted = set ? NumberOf(arguments[0]) : 0;
  unsigned int level = wanted;
  Outcome outcome = AskClient(
      ipc,
      [&](MetadataMgrClient& client) { return set ? client.SetLogLevel(level) : client.LogLevel(level); },
      [&] { return "level now " + Hexadecimal(level) + ", "; });
  if (set && level != wanted) outcome.ok = false;
  return outcome;
}

Outcome LastTick(LinxIpc& ipc) {
  constexpr unsigned int kNone = 0xFFFFFFFF;
  unsigned int tick = kNone;
  return AskClient(
      ipc, [&tick](MetadataMgrClient& client) { return client.LastSystemTick(tick); },
      [&tick] {
        if (tick == kNone) return std::string("no tick yet, ");
        const std::uint32_t age = Systick().SystemTick() - tick;
        return "tick " + std::to_string(tick) + ", " + std::to_string(age) + " ms ago, ";
      });
}

}  // namespace

Actions MetadataMgrActions(LinxIpc& ipc, double speed) {
  return {
      {"bookmark", [&ipc](const Words& arguments) { return Bookmark(ipc, arguments); }},
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

}  // namespace bench
