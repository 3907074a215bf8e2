// What goes wrong is said, and ends in exit status 1.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "BenchRun.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

struct Failure {
  const char* name;
  const char* stub;
  const char* drive;
  std::vector<std::string> options;
  testing::Matcher<std::string> output;
};

std::ostream& operator<<(std::ostream& out, const Failure& failure) {
  return out << failure.name;
}

class BenchFailure : public testing::TestWithParam<Failure> {};

TEST_P(BenchFailure, IsSaid) {
  BenchRun bench(GetParam().stub);
  bench.Drive(GetParam().drive);
  EXPECT_EQ(bench.Run(GetParam().options), 1);
  EXPECT_THAT(bench.Output(), GetParam().output);
  EXPECT_THAT(bench.Output(), HasSubstr("\nFAILED: "));
}

INSTANTIATE_TEST_SUITE_P(
    Of, BenchFailure,
    testing::Values(
        Failure{"AMetadataMgrThatNeverStarts",
                "sleeps",
                "0 quit",
                {"--start-deadline", "2"},
                AllOf(HasSubstr("not at full run within 2.0 s, waiting for MetadataMgr\n"),
                      HasSubstr("MetadataMgr: signal 15"), Not(HasSubstr("still running")))},
        Failure{"AMetadataMgrWhoseStartFails",
                "failed start",
                "0 quit",
                {},
                AllOf(HasSubstr("FAILED: MetadataMgr reports that its start failed; see "),
                      HasSubstr("/log/MetadataMgr.log\n"), HasSubstr("0 of 1 lines"))},
        Failure{"AMetadataMgrThatCannotSubscribe",
                "refuses",
                "0 quit",
                {},
                AllOf(HasSubstr("FAILED: MetadataMgr could not subscribe to its servers; see "),
                      Not(HasSubstr("told full run")))},
        Failure{"APingWithoutAnswer",
                "no pong",
                "0 ping\n0 bookmark\n0 quit",
                {},
                AllOf(HasSubstr("FAILED: ping: MetadataMgr did not answer within 2000 ms\n"),
                      HasSubstr("bookmark: bookmark notice received"), HasSubstr("3 of 3 lines"))},
        Failure{"ABookmarkWithoutNotice",
                "no notice",
                "0 bookmark\n0 quit",
                {},
                HasSubstr("FAILED: bookmark: no bookmark notice: MetadataMgr did not answer")},
        Failure{"ALogLevelThatIsNotTaken",
                "stubborn",
                "0 loglevel 255\n0 quit",
                {},
                HasSubstr("FAILED: loglevel 255: level now 0x7, ")},
        Failure{"AMetadataMgrThatDies",
                "dies",
                "0 bookmark\n100 quit",
                {},
                AllOf(HasSubstr("FAILED: MetadataMgr ended with exit status 3; see "),
                      HasSubstr("/log/MetadataMgr.log\n"), HasSubstr("10 others answered the shut-down"),
                      HasSubstr("1 of 2 lines"))},
        Failure{"AShutDownWithoutAnswer",
                "mute",
                "0 quit",
                {"--stop-deadline", "1.5"},
                AllOf(HasSubstr("FAILED: MetadataMgr did not answer the shut-down within 1500 ms\n"),
                      HasSubstr("10 others answered the shut-down"),
                      HasSubstr("FAILED: still running, sent SIGTERM: MetadataMgr\n"),
                      HasSubstr("FAILED: still running, sent SIGKILL: MetadataMgr\n"),
                      HasSubstr("MetadataMgr: signal 9, peak memory "))},
        Failure{"AnExitStatusOtherThanZero",
                "exits with 4",
                "0 quit",
                {},
                AllOf(HasSubstr("MetadataMgr answered the shut-down"),
                      HasSubstr("FAILED: MetadataMgr ended with exit status 4; see "))}),
    [](const auto& failure) { return std::string(failure.param.name); });

TEST(BenchFailure, OfAProgramThatIsNotThere) {
  BenchRun bench;
  EXPECT_EQ(bench.Run({"--program", "/nowhere/MetadataMgr"}), 1);
  EXPECT_THAT(bench.Output(),
              HasSubstr("cannot start MetadataMgr: there is no program /nowhere/MetadataMgr\n"));
}

TEST(BenchFailure, OfAProgramThatEndsAtOnce) {
  BenchRun bench;
  EXPECT_EQ(bench.Run({"--program", "/bin/true"}), 1);
  EXPECT_THAT(bench.Output(), HasSubstr("FAILED: MetadataMgr ended with exit status 0; see "));
}

TEST(BenchFailure, OfASecondBenchInTheSameDirectory) {
  BenchRun bench("good");
  bench.Drive("0 ping\n");
  bench.Start();
  ASSERT_TRUE(bench.Said("ping: answered")) << bench.Output();
  std::string output;
  EXPECT_EQ(RunVehicleBench({"run", "--out", bench.Path("")}, output), 1);
  EXPECT_THAT(output, HasSubstr("Another bench runs in "));
  EXPECT_EQ(bench.Send({"quit"}), 0) << bench.SendOutput();
  EXPECT_EQ(bench.Finish(), 0) << bench.Output();
}

}  // namespace
