#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <string>
#include <string_view>
#include <utility>

#include "LogLineText.h"

namespace {

using namespace std::string_view_literals;

constexpr timespec kMorning{1795250400, 123999999};  // 2026-11-21 08:40:00.123999999 UTC

std::string Pid() {
  return "[" + std::to_string(getpid()) + "]";
}

TEST(LogLineText, StandardErrorGetsUtcAndMask) {
  LogLineBuffer line;
  EXPECT_EQ(StderrLine(line, kMorning, 128, "MetadataMgr", "MetadataMgr:57 text"),
            "2026-11-21T08:40:00.123Z MetadataMgr" + Pid() + " 128 MetadataMgr:57 text\n");
  EXPECT_EQ(StderrLine(line, {2214172799, 0}, 1, "A", ""),  // beyond 32 bits of seconds
            "2040-02-29T23:59:59.000Z A" + Pid() + " 1 \n");
}

TEST(LogLineText, SystemLogGetsThePriorityOfTheMaskAndLocalTime) {
  setenv("TZ", "UTC-2", 1);  // two hours east
  tzset();
  constexpr std::pair<unsigned int, const char*> kPriorities[] = {
      {1, "<27>"},  {2, "<28>"},   {4, "<29>"}, {16, "<30>"},   {32, "<30>"},
      {64, "<31>"}, {128, "<30>"}, {3, "<27>"}, {0x100, "<31>"}};
  LogLineBuffer line;
  for (const auto& [mask, priority] : kPriorities) {
    EXPECT_EQ(SyslogLine(line, kMorning, mask, "MetadataMgr", "MetadataMgr:57 text"),
              priority + ("Nov 21 10:40:00 MetadataMgr" + Pid()) + ": MetadataMgr:57 text");
  }
  EXPECT_EQ(SyslogLine(line, {0, 0}, 64, "A", ""), "<31>Jan  1 02:00:00 A" + Pid() + ": ");
}

TEST(LogLineText, TextFromAPeerNeverMakesASecondLine) {
  constexpr std::string_view kHostile = "a\nb\r\tc\0d\x1b[31m\x7f\xc3\xa4"sv;
  const std::string harmless = "a?b??c?d?[31m?\xc3\xa4";
  LogLineBuffer line;
  EXPECT_TRUE(
      StderrLine(line, kMorning, 1, "N\n", kHostile).ends_with(" N?" + Pid() + " 1 " + harmless + "\n"));
  EXPECT_TRUE(SyslogLine(line, kMorning, 1, "N\n", kHostile).ends_with(" N?" + Pid() + ": " + harmless));
}

TEST(LogLineText, LongTextAndNameAreCut) {
  const std::string name(1000, 'n');
  LogLineBuffer line;
  for (const auto& lineOf : {StderrLine, SyslogLine}) {
    const std::string_view whole = lineOf(line, kMorning, 1, name, std::string(10000, 't'));
    EXPECT_EQ(whole.size(), line.size());
    EXPECT_EQ(std::count(whole.begin(), whole.end(), 'n'), 64);
    // The longest text that the line builder gives fits beside the longest name.
    const std::string longest(SysLogMsg::kMaxText, 't');
    EXPECT_NE(lineOf(line, kMorning, 0xFFFFFFFF, name, longest).find(" " + longest), std::string::npos);
  }
  EXPECT_TRUE(StderrLine(line, kMorning, 1, name, std::string(10000, 't')).ends_with("t\n"));
}

}  // namespace
