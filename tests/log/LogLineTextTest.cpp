#include <gtest/gtest.h>
#include <unistd.h>

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

}  // namespace
