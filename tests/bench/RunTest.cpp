// Successful drives, and how they end.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>

#include "BenchRun.h"
#include "clients/StreamMgrApi.h"
#include "support/Eventually.h"

namespace {

using testing::AllOf;
using testing::Eq;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

TEST(BenchRun, TellsEachStepInItsOrder) {
  BenchRun bench;
  bench.Drive(
      "0 ping\n0.01 loglevel\n0.01 loglevel 0xF0\n0.02 bookmark\n0.03 lasttick\n"
      "0.04 direct record start night-1\n0.05 direct record stop\n0.06 died GpsHal\n0.07 restarted 5\n"
      "0.08 quit\n");
  ASSERT_EQ(bench.Run(), 0) << bench.Output();
  EXPECT_THAT(bench.Output(),
              MatchesRegex("Drive .*/test.drive, speed 1, in .*/out\n"
                           "   start  StateMgr ready after .*"
                           "   start  MetadataMgr started after .*"
                           "   start  MetadataMgr subscribed after .*"
                           "   start  MetadataMgr told full run after .*"
                           " +0\\.[0-9]+  ping: answered in .*"
                           " +0\\.[0-9]+  loglevel: level now 0x7.*"
                           " +0\\.[0-9]+  loglevel 0xF0: level now 0xf0.*"
                           " +0\\.[0-9]+  bookmark: bookmark notice received after .*"
                           " +0\\.[0-9]+  lasttick: tick [0-9]+, .*"
                           "  direct record start night-1: recording event night-1\n.*"
                           "  direct record stop: end of recording event night-1\n.*"
                           "  died GpsHal: told 10 processes\n.*"
                           "  restarted 5: told 1[01] processes\n.*"
                           "  quit: shutting down\n"
                           "    stop  MetadataMgr answered the shut-down after .*"
                           "    stop  10 others answered the shut-down\n"
                           "MetadataMgr: exit status 0, peak memory .*"
                           "Good: 10 of 10 lines in .* s of the drive; start to full run .*\n"));
  EXPECT_LT(bench.Output().rfind(" subscribed after"), bench.Output().find("told full run"));
  const std::string log = bench.Log("MetadataMgr");
  EXPECT_THAT(log, HasSubstr("BookmarkHandler"));
  ASSERT_EQ(bench.Run(), 0) << bench.Output();
  EXPECT_THAT(bench.Log("MetadataMgr"), AllOf(StartsWith(log), Not(Eq(log))))
      << "those of earlier runs are kept";
}

TEST(BenchRun, ShutsDownInOrderAtASignal) {
  for (const int signal : {SIGINT, SIGTERM}) {
    BenchRun bench;
    bench.Drive("0 ping\n1000 ping\n");
    bench.Start();
    ASSERT_TRUE(bench.Said("ping: answered")) << bench.Output();
    bench.Signal(signal);
    EXPECT_EQ(bench.Finish(), 0);
    EXPECT_THAT(
        bench.Output(),
        AllOf(HasSubstr("a shut-down was asked for\n"), HasSubstr("MetadataMgr answered the shut-down"),
              HasSubstr("MetadataMgr: exit status 0"), HasSubstr("Good: 1 of 2 lines")));
  }
}

TEST(BenchRun, LeavesNoProcessBehindWhenItIsKilled) {
  BenchRun bench("mute");
  bench.Drive("0 ping\n");
  bench.Start();
  ASSERT_TRUE(bench.Said("ping: answered")) << bench.Output();
  bench.Signal(SIGKILL);
  EXPECT_EQ(bench.Finish(), 128 + SIGKILL);
  for (const char* process : {"StateMgr", "StreamMgr", "GpsHal", "MetadataMgr"}) {
    const int lock = open(bench.Path(std::string("ipc/") + process + ".lock").c_str(), O_RDWR);
    EXPECT_TRUE(Eventually([lock] { return flock(lock, LOCK_EX | LOCK_NB) == 0; })) << process;
    close(lock);
  }
}

TEST(BenchRun, WorksInADirectoryWhosePathIsTooLongForSockets) {
  BenchRun bench;
  bench.UseDirectory(std::string(100, 'd') + "/" + std::string(100, 'e'));
  bench.Drive("0 ping\n");
  bench.Start();
  ASSERT_TRUE(bench.Said("ping: answered")) << bench.Output();
  const std::string endpoints = std::filesystem::read_symlink(bench.Path("ipc"));
  EXPECT_TRUE(std::filesystem::exists(endpoints + "/Bench"));
  const Ran second = RunVehicleBench({"run", "--out", bench.Path("")});
  EXPECT_EQ(second.status, 1);
  EXPECT_THAT(second.out + second.said, HasSubstr("Another bench runs in "));
  EXPECT_EQ(bench.Send({"quit"}), 0) << bench.SendOutput();
  EXPECT_EQ(bench.Finish(), 0) << bench.Output();
  EXPECT_FALSE(std::filesystem::exists(endpoints));
  EXPECT_FALSE(std::filesystem::is_symlink(bench.Path("ipc")));
}

TEST(BenchRun, DoesAndAnswersLinesFromAnotherTerminal) {
  BenchRun bench;
  bench.Drive("0 ping\n");
  bench.Start();
  ASSERT_TRUE(bench.Said("ping: answered")) << bench.Output();
  EXPECT_EQ(bench.Send({"bookmark"}), 0);
  EXPECT_THAT(bench.SendOutput(), HasSubstr("bookmark: bookmark notice received after "));
  for (const char* process : {"TempHal", "StreamMgr"}) {
    EXPECT_EQ(bench.Send({"died", process}), 0);
    EXPECT_EQ(bench.SendOutput(), std::string("died ") + process + ": told 10 processes\n");
  }
  EXPECT_THAT(bench.Output(), HasSubstr("  died TempHal (Send-"));

  setenv("LINX_IPC_DIR", bench.Path("ipc").c_str(), 1);
  LinxIpc ipc("Test");
  ASSERT_EQ(ipc.Init(), 0);
  const auto recording = [&ipc] { return StreamMgrApi::CurrentlyRecordingREID(ipc, 20000); };
  EXPECT_EQ(recording(), "");
  EXPECT_EQ(bench.Send({"direct", "record", "start", "night-7"}), 0);
  EXPECT_EQ(recording(), "night-7");
  EXPECT_EQ(bench.Send({"record", "start"}), 0);
  EXPECT_TRUE(Eventually([&] { return recording() == "bench-2"; }));
  EXPECT_EQ(bench.Send({"record", "stop"}), 0);
  EXPECT_TRUE(Eventually([&] { return recording().empty(); }));
  unsetenv("LINX_IPC_DIR");

  EXPECT_EQ(bench.Send({"quit"}), 0) << bench.SendOutput();
  EXPECT_EQ(bench.Finish(), 0) << bench.Output();
}

}  // namespace
