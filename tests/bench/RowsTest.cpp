// Plays the default drive to the real MetadataMgr. The recording holds every sent event once, in order, with
// its tick and values, and nothing else.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "BenchRun.h"
#include "SentRows.h"

namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

// Waits for the end of a started drive, then compares all rows.
void ExpectEveryRow(BenchRun& bench) {
  AwaitAllSent(bench, bench.Recording());
  EXPECT_EQ(bench.Send({"quit"}), 0) << bench.SendOutput();
  EXPECT_EQ(bench.Finish(), 0) << bench.Output();
  ExpectAllSent(bench, bench.Recording());
}

// Runs two benches side by side, because they mostly wait.
TEST(Rows, HoldEveryEventOnceInOrderAlsoWhereTheDiskStalls) {
  BenchRun stalled;
  stalled.Drive(BenchRun::DriveWithoutItsEnd());
  stalled.Start({"--program", STALLED_METADATAMGR});
  BenchRun bench;
  bench.Drive(BenchRun::DriveWithoutItsEnd());
  bench.Start();
  const std::string sharedRecord = "/dev/shm/metadata-bench-" + std::to_string(bench.Id());
  ExpectEveryRow(bench);
  EXPECT_THAT(bench.Output(), Not(HasSubstr("FAILED")));
  EXPECT_FALSE(std::filesystem::exists(sharedRecord));
  EXPECT_THAT(bench.Output(), HasSubstr("loglevel 255: level now 0xff"));
  EXPECT_THAT(bench.Output(), ContainsRegex("MetadataMgr: exit status 0, peak memory [1-9][0-9]* kB, CPU "));
  EXPECT_THAT(bench.Log("MetadataMgr"), HasSubstr("GpsStatusEventHandler"));
  ExpectEveryRow(stalled);
  EXPECT_EQ(Count(stalled.Log("MetadataMgr"), "The disk stood still"), 1U);
}

}  // namespace
