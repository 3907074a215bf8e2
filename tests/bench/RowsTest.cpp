// The default drive through the real MetadataMgr: the recording holds every event that the bench
// sent, once, in order, with its tick and values, and nothing else.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "BenchRun.h"
#include "SentRows.h"
#include "ipc/LinxIpc.h"
#include "support/Eventually.h"

namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

// The default drive, up to the quit.
std::string DriveWithoutItsEnd() {
  std::ostringstream text;
  text << std::ifstream(DEFAULT_DRIVE).rdbuf();
  std::string drive = text.str();
  return drive.substr(0, drive.rfind('\n', drive.find(" quit")) + 1);
}

std::size_t Count(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += part.size()) ++count;
  return count;
}

std::string RecordingOf(const BenchRun& bench) {
  std::vector<std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(bench.Path("mnt/metadata"))) {
    if (entry.path().extension() == ".db") files.push_back(entry.path());
  }
  EXPECT_EQ(files.size(), 1U);
  return files.at(0);
}

std::vector<Compared> Compare(const BenchRun& bench) {
  return CompareSentWithRecorded(bench.Path("sent"), RecordingOf(bench));
}

// Ended only when everything has arrived: an end overtakes what others still say. The exit status.
int EndWhenAllIsRecorded(BenchRun& bench) {
  EXPECT_TRUE(Eventually([&] { return Count(bench.Output(), "bookmark notice received") == 2; },
                         std::chrono::seconds(60)))
      << bench.Output();
  EXPECT_TRUE(Eventually([&] {
    const auto compared = Compare(bench);
    return std::all_of(compared.begin(), compared.end(),
                       [](const Compared& c) { return c.sent == c.recorded; });
  }));
  EXPECT_EQ(bench.Send({"quit"}), 0) << bench.SendOutput();
  const int status = bench.Finish();
  for (const Compared& compared : Compare(bench)) {
    EXPECT_EQ(compared.recorded, compared.sent) << compared.what;
    EXPECT_NE(compared.sent.empty(), compared.expected) << compared.what;
  }
  return status;
}

void Play(BenchRun& bench, const std::vector<std::string>& options) {
  bench.Drive(DriveWithoutItsEnd());
  bench.Start(options);
  const pid_t id = bench.Id();
  EXPECT_EQ(EndWhenAllIsRecorded(bench), 0) << bench.Output();
  EXPECT_THAT(bench.Output(), Not(HasSubstr("FAILED")));
  EXPECT_FALSE(std::filesystem::exists("/dev/shm/metadata-bench-" + std::to_string(id)));
}

void PlayAtSpeed(const char* speed) {
  BenchRun bench;
  Play(bench, {"--speed", speed});
  EXPECT_THAT(bench.Output(), HasSubstr("loglevel 255: level now 0xff"));
  EXPECT_THAT(bench.Output(), ContainsRegex("MetadataMgr: exit status 0, peak memory [1-9][0-9]* kB, CPU "));
  EXPECT_THAT(bench.Log("MetadataMgr"), HasSubstr("GpsStatusEventHandler"));
}

TEST(Rows, HoldEveryEventOnceInOrderAtTenTimesSpeed) {
  PlayAtSpeed("10");
}

// Two benches beside each other, since most of it is waiting.
TEST(Rows, HoldEveryEventOnceInOrderAlsoWhereTheDiskStalls) {
  BenchRun stalled;
  stalled.Drive(DriveWithoutItsEnd());
  stalled.Start({"--program", STALLED_METADATAMGR});
  PlayAtSpeed("1");
  EXPECT_EQ(EndWhenAllIsRecorded(stalled), 0) << stalled.Output();
  EXPECT_EQ(Count(stalled.Log("MetadataMgr"), "The disk stood still"), 1U);
}

// Adds to a recording what makes a copy of it long: first values, which no event is compared with.
void Lengthen(const std::string& recording) {
  sqlite3* file = nullptr;
  EXPECT_EQ(sqlite3_open(recording.c_str(), &file), SQLITE_OK);
  (void)sqlite3_busy_timeout(file, 20'000);
  EXPECT_EQ(sqlite3_exec(file,
                         "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<1000000) "
                         "INSERT INTO temperature SELECT -i, 1, NULL, 0, 0, i%100 FROM n",
                         nullptr, nullptr, nullptr),
            SQLITE_OK)
      << sqlite3_errmsg(file);
  sqlite3_close(file);
}

// The byte that is answered: 1 for a copy.
int AskForCopy(const BenchRun& bench) {
  setenv("LINX_IPC_DIR", bench.Path("ipc").c_str(), 1);
  LinxIpc ipc("Test");
  EXPECT_EQ(ipc.Init(), 0);
  std::string request = bench.Path("copy.db");
  request.resize(1028, '\0');
  request.append(4, '\xff');
  IpcMessage message;
  (void)message.Allocate(13490, static_cast<unsigned int>(request.size()), request.data());
  EXPECT_EQ(ipc.Notify("MetadataMgr", message, true), 0);
  IpcMessage answer;
  EXPECT_EQ(ipc.Receive(60'000, 13491, "MetadataMgr", &answer), 0);
  unsetenv("LINX_IPC_DIR");
  return answer.Size() == 1 ? *answer.DataPtr() : -1;
}

std::size_t SentLines(const BenchRun& bench) {
  std::size_t lines = 0;
  for (const auto& entry : std::filesystem::directory_iterator(bench.Path("sent"))) {
    std::ostringstream text;
    text << std::ifstream(entry.path()).rdbuf();
    lines += Count(text.str(), "\n");
  }
  return lines;
}

// Events follow each other by hundredths of a second, GPS readings to the end; the copy takes most of one.
TEST(RowsBesideACopy, HoldEveryEventOnceInOrder) {
  if (*METADATAMGR != '\0') GTEST_SKIP() << "under emulation the drive is over before the recording is long";
  BenchRun bench;
  std::string drive = DriveWithoutItsEnd();
  drive.erase(drive.rfind("18.8  gps rate 0\n"), std::string("18.8  gps rate 0\n").size());
  bench.Drive(drive);
  bench.Start({"--speed", "2"});
  ASSERT_TRUE(bench.Said("record start: sent")) << bench.Output();
  Lengthen(bench.Path("mnt/metadata/metadata.000001.db"));
  ASSERT_TRUE(bench.Said("direct record start evening-2")) << bench.Output();
  const std::size_t sentBefore = SentLines(bench);
  ASSERT_EQ(AskForCopy(bench), 1);
  EXPECT_GT(SentLines(bench), sentBefore) << "while the copy was made";
  for (const Compared& compared : CompareSentWithRecorded(bench.Path("sent"), bench.Path("copy.db"))) {
    EXPECT_LE(compared.recorded.size(), compared.sent.size());
    EXPECT_TRUE(std::equal(compared.recorded.begin(), compared.recorded.end(), compared.sent.begin()))
        << compared.what;
  }
  EXPECT_EQ(bench.Send({"gps", "rate", "0"}), 0) << bench.SendOutput();
  // 1 where the copy takes so long that the bench misses an answer.
  EXPECT_THAT(EndWhenAllIsRecorded(bench), testing::AnyOf(0, 1)) << bench.Output();
}

// The MetadataMgr beside the bench is of its machine, the other one is emulated.
TEST(RowsOfAnotherMachine, AreThoseOfThisOne) {
  if (*METADATAMGR == '\0') GTEST_SKIP() << "there is no other machine";
  BenchRun there;
  Play(there, {"--speed", "10"});
  BenchRun here;
  Play(here,
       {"--speed", "10", "--program", std::filesystem::path(VEHICLEBENCH).replace_filename("MetadataMgr")});
  const auto rows = TimelineWithoutReadings(RecordingOf(there));
  EXPECT_GT(rows.size(), 50U);
  EXPECT_EQ(rows, TimelineWithoutReadings(RecordingOf(here)));
}

}  // namespace
