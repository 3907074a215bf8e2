// What a bench recorded, another bench plays: the second recording is the same, and a comparison finds any
// change. In the build for the other machine, MetadataMgr records there, and the replay goes to the one of
// this machine.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "ReplayFixture.h"
#include "support/Connection.h"

namespace {

using testing::HasSubstr;

struct Golden {
  const char* name;
  std::string drive;  // empty: as the options say
  std::vector<std::string> options;
  std::string sql{};    // then changes the recording
  std::string needs{};  // a file that is not everywhere
  std::vector<std::string> replay{};

  friend void PrintTo(const Golden& golden, std::ostream* out) { *out << golden.name; }
};

const std::string kWrap = ForEachTable(
    "UPDATE ! SET sender_tick=(sender_tick+4294967200-(SELECT min(sender_tick) FROM state WHERE "
    "sender_tick>0))&4294967295 WHERE sender_tick>10000;");
const std::string kDeaths =
    "0 gps rate 20\n0 radar rate 10\n0 temp rate 5\n1 gps rate 0\n1 radar rate 0\n1.2 kill GpsHal\n1.3 kill "
    "RadarHal\n"
    "2 start GpsHal\n2 gps rate 20\n2.5 start RadarHal\n2.5 radar 1 2 3 4\n3 gps rate 0\n3 temp rate 0\n3.2 "
    "died MicMgr\n"
    "3.3 restarted MicMgr\n3.4 mic 1 present active\n3.6 kill GpsHal\n3.7 input brakes on\n4 quit\n";
const std::string kRealLog = REAL_TRACKS "/telit-he910.log";

// The flood of all servers. After it MetadataMgr gets three seconds to take what they sent.
std::string Load() {
  const std::string drive = TextOfFile(LOAD_DRIVE);
  return drive.substr(0, drive.find("15 ping")) +
         "3000 gps fix 1 2 3 4 5\n3010 gps fix 2 3 4 5 6\n3020 quit\n";
}

const Golden kGoldens[] = {
    {"TheDefaultDrive", TextOfFile(DEFAULT_DRIVE), {"--speed", "20"}},
    {"TheDefaultDriveInRealTime", TextOfFile(DEFAULT_DRIVE), {"--speed", "20"}, "", "", {"--speed", "1"}},
    {"FullLoad", Load(), {"--speed", "1000"}},
    {"AReceiver", "", {"--nmea", OWN_TRACKS "/town.nmea", "--speed", "50"}},
    {"ARealReceiver", "", {"--nmea", kRealLog, "--speed", "500"}, "", kRealLog},
    {"DeathsAndRestarts", kDeaths, {"--speed", "4"}},
    {"WhatADriveCannotWriteAndTicksThatWrap", kAwkwardDrive, {"--speed", "5"}, kWrap},
};

// The last two events of GPS: "earlier" and "later". Each drive ends with two that differ.
constexpr const char* kRows =
    "CREATE TEMP TABLE later AS SELECT seq FROM gps WHERE event=1 ORDER BY seq DESC LIMIT 1;"
    "CREATE TEMP TABLE earlier AS SELECT seq FROM gps WHERE event=1 ORDER BY seq DESC LIMIT 1 OFFSET 1;";

struct Change {
  const char* sql;
  const char* said;
} const kChanges[] = {
    {"UPDATE gps SET satellites_used=satellites_used+1 WHERE seq=(SELECT seq FROM earlier)",
     "First difference, gps: the values differ\n"},
    {"UPDATE gps SET seq=-1 WHERE seq=(SELECT seq FROM earlier);"
     "UPDATE gps SET seq=(SELECT seq FROM earlier) WHERE seq=(SELECT seq FROM later);"
     "UPDATE gps SET seq=(SELECT seq FROM later) WHERE seq=-1",
     "First difference, gps: the order differs\n"},
    {"UPDATE gps SET sender_tick=(sender_tick+1000)&4294967295 WHERE seq=(SELECT seq FROM earlier)",
     "First difference, gps: the sender ticks differ by 1000 ms\n"},
};

class GoldenReplay : public testing::TestWithParam<Golden> {
 protected:
  void Replay(const std::string& recording) {
    std::vector<std::string> arguments = GetParam().replay;
    arguments.insert(arguments.end(), {"--program", NATIVE_METADATAMGR});
    ASSERT_EQ(again_.Replay(recording, arguments), 0) << again_.Output();
  }

  BenchRun first_;
  BenchRun again_;
};

TEST_P(GoldenReplay, RecordsTheSame) {
  const Golden& golden = GetParam();
  if (!golden.needs.empty() && !std::filesystem::exists(golden.needs)) GTEST_SKIP() << "no " << golden.needs;
  if (!golden.drive.empty()) first_.Drive(golden.drive);
  ASSERT_EQ(first_.Run(golden.options), 0) << first_.Output();
  ASSERT_EQ(Connection(first_.Recording()).Rows(golden.sql), "");
  Replay(first_.Path("mnt/metadata"));
  const Ran diff = Diff(first_.Recording(), again_.Recording());
  EXPECT_EQ(diff.status, 0) << diff.out << diff.said;
  EXPECT_THAT(diff.out, HasSubstr(" records are alike, 0 differences\n"));
  const TempDir directory;
  for (const Change& change : kChanges) {
    const std::string changed = directory.Write("metadata.000001.db", TextOfFile(again_.Recording()));
    ASSERT_EQ(Connection(changed).Rows(std::string(kRows) + change.sql), "");
    const Ran found = Diff(first_.Recording(), changed);
    EXPECT_EQ(found.status, 1) << change.sql;
    EXPECT_THAT(found.out, HasSubstr(change.said));
  }
}

INSTANTIATE_TEST_SUITE_P(Of, GoldenReplay, testing::ValuesIn(kGoldens), testing::PrintToStringParamName());

}  // namespace
