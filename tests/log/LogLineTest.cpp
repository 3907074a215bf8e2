#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <string>

#include "StderrChild.h"
#include "log/LogLine.h"
#include "support/AllocationCount.h"

namespace {

constexpr LogSource log{"Common/Misc/ProcessInitializer"};

// What `scenario` logs, from the mask on, without the line feeds.
template <typename Scenario>
std::string Logged(const Scenario& scenario) {
  int fds[2];
  if (pipe(fds) != 0) std::abort();
  WithStderr(fds[1], scenario);
  close(fds[1]);
  std::string text(4096, '\0');
  const ssize_t size = read(fds[0], text.data(), text.size());
  close(fds[0]);
  text.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
  std::string lines;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = text.find('\n', begin);
    const std::size_t mask = text.find("] ", begin) + 2;
    lines += (lines.empty() ? "" : "|") + text.substr(mask, end - mask);
    begin = end + 1;
  }
  return lines;
}

std::string Prefix(unsigned int line) {
  return "Common/Misc/ProcessInitializer:" + std::to_string(line) + " ";
}

TEST(LogLine, CarriesTheStatedNameTheCallingLineAndAllParts) {
  const unsigned int line = __LINE__ + 1;
  const auto write = [] { log(kLogError, "text ", std::string("string "), -1, " ", 2U, " ", true, false); };
  EXPECT_EQ(Logged(write), "1 " + Prefix(line) + "text string -1 2 10");
}

TEST(LogLine, WritesEveryIntegerInFull) {
  struct Case {
    void (*write)();
    const char* text;
  };
  constexpr Case kCases[] = {
      {[] { log(kLogError, std::numeric_limits<int>::min()); }, "-2147483648"},
      {[] { log(kLogError, std::numeric_limits<unsigned int>::max()); }, "4294967295"},
      {[] { log(kLogError, std::numeric_limits<long long>::min()); }, "-9223372036854775808"},
      {[] { log(kLogError, std::numeric_limits<unsigned long long>::max()); }, "18446744073709551615"},
      {[] { log(kLogError, std::size_t{7}, -7L); }, "7-7"},
      {[] { log(kLogError, LogHex{0xDEADBEEF}, " ", LogHex{0}); }, "deadbeef 0"},
      {[] { log(kLogError, static_cast<const char*>(nullptr)); }, "(null)"},
  };
  for (const auto& [write, text] : kCases) EXPECT_TRUE(Logged(write).ends_with(text)) << text;
}

TEST(LogLine, OnlyMasksOfTheLevelAreWritten) {
  struct Case {
    int level;  // -1: as it starts
    const char* masks;
  };
  constexpr Case kCases[] = {{-1, "1 2 4 "}, {0, ""}, {64 | 16, "16 64 "}, {255, "1 2 4 16 32 64 128 "}};
  for (const auto& [level, masks] : kCases) {
    const std::string lines = Logged([level = level] {
      if (level >= 0) LogClient::Instance().Level(static_cast<unsigned int>(level));
      for (const LogMask mask :
           {kLogError, kLogMalformed, kLogUnusual, kLogShutdown, kLogDetail, kLogTrace, kLogInfo}) {
        log(mask, "");
      }
    });
    std::string written;
    for (std::size_t begin = 0; begin < lines.size(); begin = lines.find('|', begin) + 1) {
      written += lines.substr(begin, lines.find(' ', begin) - begin) + " ";
      if (lines.find('|', begin) == std::string::npos) break;
    }
    EXPECT_EQ(written, masks) << "level " << level;
  }
}

// Of one call; others and lines that nobody causes by force are written as ever.
TEST(LogLine, AFloodOfTroubleIsBounded) {
  const std::string lines = Logged([] {
    LogClient& client = LogClient::Instance();
    client.Level(255);
    const auto written = [&client](LogMask mask) {
      int count = 0;
      for (int i = 0; i < 5000; ++i) count += client.Admits(mask, "Flood", mask) ? 1 : 0;
      return count;
    };
    for (const LogMask mask : {kLogError, kLogMalformed, kLogUnusual}) {
      const int count = written(mask);
      EXPECT_GE(count, 2000);
      EXPECT_LT(count, 3000);
    }
    for (const LogMask mask : {kLogShutdown, kLogDetail, kLogTrace, kLogInfo}) EXPECT_EQ(written(mask), 5000);
    log(kLogError, "another, after ", client.DroppedLines() > 6000);
  });
  EXPECT_NE(lines.find(" log lines dropped|1 "), std::string::npos) << lines;
  EXPECT_TRUE(lines.ends_with("another, after 1")) << lines;
}

TEST(LogLine, TextIsCutWhereTheBufferEnds) {
  const std::string lines = Logged([] {
    SysLogMsg line = LogMsg::Log(kLogError, LogClient::Instance().ProcessName());
    line << std::string(SysLogMsg::kMaxText - 2, 'x') << 12345 << "more";
  });
  EXPECT_EQ(lines, "1 " + std::string(SysLogMsg::kMaxText - 2, 'x') + "12");
}

TEST(LogLine, KeepsErrnoAndAllocatesNothing) {
  const std::string lines = Logged([] {
    LogClient::Instance().ProcessName("a process name that no string keeps within itself");
    log(kLogError, "first");  // sets up
    errno = ENOTDIR;
    const std::size_t before = AllocationCount();
    log(kLogError, "second ", 12345, " ", LogHex{42});
    EXPECT_EQ(AllocationCount(), before);
    EXPECT_EQ(errno, ENOTDIR);
  });
  EXPECT_TRUE(lines.ends_with("second 12345 2a")) << lines;
}

}  // namespace
