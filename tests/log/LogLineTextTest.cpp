#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <string>
#include <string_view>

#include "LogLineText.h"

namespace {

using namespace std::string_view_literals;

constexpr timespec kMorning{1795250400, 123999999};  // 2026-11-21 08:40:00.123999999 UTC

std::string Pid() {
  return "[" + std::to_string(getpid()) + "]";
}

TEST(LogLineText, StandardErrorGetsUtcNamePidMaskAndText) {
  LogLineBuffer line;
  EXPECT_EQ(StderrLine(line, kMorning, 128, "MetadataMgr", "MetadataMgr:57 text"),
            "2026-11-21T08:40:00.123Z MetadataMgr" + Pid() + " 128 MetadataMgr:57 text\n");
  EXPECT_EQ(StderrLine(line, {2214172799, 0}, 1, "A", ""),  // beyond 32 bits of seconds
            "2040-02-29T23:59:59.000Z A" + Pid() + " 1 \n");
}

TEST(LogLineText, SystemLogGetsThePriorityOfTheMaskAndLocalTime) {
  setenv("TZ", "UTC-2", 1);  // two hours east
  tzset();
  struct Case {
    unsigned int mask;
    const char* priority;
  };
  constexpr Case kCases[] = {{1, "<27>"},  {2, "<28>"},   {4, "<29>"}, {16, "<30>"},   {32, "<30>"},
                             {64, "<31>"}, {128, "<30>"}, {3, "<27>"}, {0x100, "<31>"}};
  for (const auto& [mask, priority] : kCases) {
    LogLineBuffer line;
    EXPECT_EQ(SyslogLine(line, kMorning, mask, "MetadataMgr", "MetadataMgr:57 text"),
              priority + ("Nov 21 10:40:00 MetadataMgr" + Pid()) + ": MetadataMgr:57 text");
  }
  LogLineBuffer line;
  EXPECT_EQ(SyslogLine(line, {0, 0}, 64, "A", ""), "<31>Jan  1 02:00:00 A" + Pid() + ": ");
}

TEST(LogLineText, TextFromAPeerNeverMakesASecondLine) {
  constexpr std::string_view kHostile = "a\nb\r\tc\0d\x1b[31m\x7f\xc3\xa4"sv;
  const std::string harmless = "a?b??c?d?[31m?\xc3\xa4";
  LogLineBuffer line;
  EXPECT_EQ(StderrLine(line, kMorning, 1, "N\n", kHostile),
            "2026-11-21T08:40:00.123Z N?" + Pid() + " 1 " + harmless + "\n");
  EXPECT_TRUE(SyslogLine(line, kMorning, 1, "N\n", kHostile).ends_with("N?" + Pid() + ": " + harmless));
}

TEST(LogLineText, LongTextAndNameAreCut) {
  const std::string name(1000, 'n');
  const std::string text(10000, 't');
  LogLineBuffer line;
  for (const std::string_view made :
       {StderrLine(line, kMorning, 1, name, text), SyslogLine(line, kMorning, 1, name, text)}) {
    EXPECT_EQ(made.size(), line.size());
    EXPECT_EQ(std::count(made.begin(), made.end(), 'n'), 64);
  }
  EXPECT_EQ(StderrLine(line, kMorning, 1, name, text).substr(line.size() - 2), "t\n");
  // The longest text that the line builder gives fits beside the longest name.
  const std::string longest(SysLogMsg::kMaxText, 't');
  EXPECT_TRUE(StderrLine(line, kMorning, 0xFFFFFFFF, name, longest).ends_with(" " + longest + "\n"));
  EXPECT_TRUE(SyslogLine(line, kMorning, 0xFFFFFFFF, name, longest).ends_with(" " + longest));
}

}  // namespace
