#include <gtest/gtest.h>

#include <cerrno>
#include <cstddef>
#include <limits>
#include <string>

#include "StderrChild.h"
#include "log/LogLine.h"
#include "support/AllocationCount.h"
#include "support/LogCapture.h"
#include "support/LogText.h"

namespace {

constexpr LogSource log{"Common/Misc/ProcessInitializer"};

// Runs `scenario` in its own process. Returns the lines that it logs.
template <typename Scenario>
std::string Written(const Scenario& scenario) {
  const LogCapture capture;
  WithStderr(STDERR_FILENO, scenario);
  return capture.Text();
}
template <typename Scenario>
Lines Logged(const Scenario& scenario) {
  return LogText(Written(scenario));
}

std::string Line(const std::string& text) {
  return "1 Common/Misc/ProcessInitializer: " + text;
}

TEST(LogLine, CarriesMaskStatedNameAndCallingLine) {
  const unsigned int line = __LINE__ + 1;
  const std::string written = Written([] { log(kLogError, "text"); });
  EXPECT_TRUE(written.ends_with("] 1 Common/Misc/ProcessInitializer:" + std::to_string(line) + " text\n"))
      << written;
}

TEST(LogLine, WritesEveryPartInFull) {
  EXPECT_EQ(Logged([] {
              log(kLogError, "text ", std::string("string "), -1, " ", 2U, " ", true, false);
              log(kLogError, std::numeric_limits<int>::min(), std::numeric_limits<unsigned int>::max());
              log(kLogError, std::numeric_limits<long long>::min());
              log(kLogError, std::numeric_limits<unsigned long long>::max());
              log(kLogError, std::size_t{7}, -7L, " ", LogHex{0xDEADBEEF}, " ", LogHex{0});
              log(kLogError, static_cast<const char*>(nullptr));
            }),
            (Lines{Line("text string -1 2 10"), Line("-21474836484294967295"), Line("-9223372036854775808"),
                   Line("18446744073709551615"), Line("7-7 deadbeef 0"), Line("(null)")}));
}

TEST(LogLine, OnlyMasksOfTheLevelAreWritten) {
  const auto written = [](int level) {
    std::string masks;
    for (const std::string& line : Logged([level] {
           if (level >= 0) LogClient::Instance().Level(static_cast<unsigned int>(level));
           for (unsigned int mask = 1; mask <= kLogInfo; mask *= 2) log(static_cast<e_LogMask>(mask), "");
         })) {
      masks += line.substr(0, line.find(' ') + 1);
    }
    return masks;
  };
  EXPECT_EQ(written(-1), "1 2 4 ") << "as it starts";
  EXPECT_EQ(written(0), "");
  EXPECT_EQ(written(64 | 16), "16 64 ");
}

// The limit applies to one statement with a trouble mask. Other statements and masks are not limited.
TEST(LogLine, AFloodOfTroubleIsBounded) {
  const Lines lines = Logged([] {
    LogClient& client = LogClient::Instance();
    client.Level(255);
    const auto written = [&client](e_LogMask mask) {
      int count = 0;
      for (int i = 0; i < 5000; ++i) count += client.Admits(mask, {"Flood", mask}) ? 1 : 0;
      return count;
    };
    for (const e_LogMask mask : {kLogError, kLogMalformed, kLogUnusual}) {
      const int count = written(mask);
      EXPECT_GE(count, 2000);
      EXPECT_LT(count, 3000);
    }
    for (const e_LogMask mask : {kLogShutdown, kLogDetail, kLogTrace, kLogInfo})
      EXPECT_EQ(written(mask), 5000);
    log(kLogError, "another, after ", client.DroppedLines() > 6000);
    for (int i = 0; i < 5000; ++i) (void)client.Admits(kLogError, {"File", 1, "FirstHandler"});
    EXPECT_FALSE(client.Admits(kLogError, {"File", 1, "FirstHandler"}));
    EXPECT_TRUE(client.Admits(kLogError, {"File", 1, "SecondHandler"})) << "a statement that both share";
    EXPECT_TRUE(client.Admits(kLogError, {"File", 65, "FirstHandler"}));
    int ofManyPlaces = 0;
    for (unsigned int i = 0; i < 1'500'000; ++i) {
      ofManyPlaces += client.Admits(kLogError, {"Flood in turn", i % 1000}) ? 1 : 0;
    }
    EXPECT_LT(ofManyPlaces, 600'000) << "those that find no row free share one";
    for (int i = 0; i < 100; ++i) {
      (void)client.Admits(kLogError, {"File", 1, "FirstHandler"});
      log(kLogInfo, "kept");
    }
  });
  ASSERT_GE(lines.size(), 102U);
  EXPECT_TRUE(lines[0].ends_with(" log lines dropped")) << lines[0];
  EXPECT_EQ(lines[1], Line("another, after 1"));
  EXPECT_LE(lines.size(), 110U) << "one line a second tells of dropped ones";
}

TEST(LogLine, TextIsCutWhereTheBufferEnds) {
  const std::string written = Written([] {
    SysLogMsg line = LogMsg::Log(kLogError, LogClient::Instance().ProcessName());
    line << std::string(SysLogMsg::kMaxText - 2, 'x') << 12345 << "more";
  });
  EXPECT_TRUE(written.ends_with("] 1 " + std::string(SysLogMsg::kMaxText - 2, 'x') + "12\n")) << written;
}

TEST(LogLine, KeepsErrnoAndAllocatesNothing) {
  WithStderr(STDERR_FILENO, [] {
    const LogCapture capture;
    LogClient::Instance().ProcessName("a process name that no string keeps within itself");
    log(kLogError, "first");  // sets up the client
    errno = ENOTDIR;
    const std::size_t before = AllocationCount();
    log(kLogError, "second ", 12345, " ", LogHex{42});
    EXPECT_EQ(AllocationCount(), before);
    EXPECT_EQ(errno, ENOTDIR);
  });
}

}  // namespace
