// Every failure is reported and gives exit status 1.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "BenchRun.h"

namespace {

using testing::HasSubstr;

struct Failure {
  const char* stub;
  const char* drive;
  std::vector<std::string> options;
  std::vector<const char*> says;
};

// Each case runs in its own bench.
const Failure kFailures[] = {
    {"sleeps",
     "0 quit",
     {"--start-deadline", "2"},
     {"FAILED: not at full run within 2.0 s, waiting for MetadataMgr\n", "MetadataMgr: signal 15"}},
    {"failed start",
     "0 quit",
     {},
     {"FAILED: MetadataMgr reports that its start failed; see ", "/log/MetadataMgr.log\n", "0 of 1 lines"}},
    {"refuses",
     "0 quit",
     {},
     {"FAILED: MetadataMgr could not subscribe to its servers; see ", "0 of 1 lines"}},
    {"no pong",
     "0 ping\n0 bookmark\n0 quit",
     {},
     {"FAILED: ping: MetadataMgr did not answer within 2000 ms\n", "bookmark: bookmark notice received",
      "3 of 3 lines"}},
    {"no notice",
     "0 bookmark\n0 quit",
     {},
     {"FAILED: bookmark: no bookmark notice: MetadataMgr did not answer"}},
    {"stubborn", "0 loglevel 255\n0 quit", {}, {"FAILED: loglevel 255: level now 0x7, "}},
    {"dies",
     "0 bookmark\n100 quit",
     {},
     {"FAILED: MetadataMgr ended with exit status 3; see ", "10 others answered the shut-down",
      "1 of 2 lines"}},
    {"mute",
     "0 quit",
     {"--stop-deadline", "1.5"},
     {"FAILED: MetadataMgr did not answer the shut-down within 1500 ms\n", "10 others answered the shut-down",
      "FAILED: still running, sent SIGTERM: MetadataMgr\n",
      "FAILED: still running, sent SIGKILL: MetadataMgr\n", "MetadataMgr: signal 9, peak memory "}},
    {"exits with 4", "0 quit", {}, {"FAILED: MetadataMgr ended with exit status 4; see "}},
    {"good",
     "0 quit",
     {"--program", "/nowhere/MetadataMgr"},
     {"cannot start MetadataMgr: there is no program /nowhere/MetadataMgr\n"}},
    {"good", "0 quit", {"--program", "/bin/true"}, {"FAILED: MetadataMgr ended with exit status 0; see "}},
};

TEST(BenchFailure, IsSaid) {
  for (const Failure& failure : kFailures) {
    BenchRun bench(failure.stub);
    bench.Drive(failure.drive);
    EXPECT_EQ(bench.Run(failure.options), 1);
    for (const char* text : failure.says) EXPECT_THAT(bench.Output(), HasSubstr(text)) << failure.stub;
  }
}

}  // namespace
