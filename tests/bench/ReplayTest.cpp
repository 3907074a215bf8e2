// What a bench recorded, another bench plays: the second recording is the same.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>

#include "BenchRun.h"
#include "Tables.h"
#include "support/Connection.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

Ran Diff(const std::string& a, const std::string& b, const std::vector<std::string>& options = {}) {
  std::vector<std::string> arguments{METADATA_PROGRAM, "diff", a, b};
  arguments.insert(arguments.end(), options.begin(), options.end());
  return RunProgram(arguments);
}

// Texts that a drive cannot write, readings with all fields, several parts of an item at once, a video
// recording that runs at the start, a death, a lost fix.
const std::string kAwkwardDrive =
    "before direct record start\nbefore gps none\nbefore radar none\n"
    "before payload ConfigMgr officer 0000000423205f09\n"
    "0 payload GpsHal gps 000a0014000007d000000000000c0028000001f400000001013531e801f4010e0384000c00000002"
    "0000000300007fff000000090000002f02faf08001000003e8\n"
    "0.1 payload MicMgr mic 00020000000201010000001f0001000003e8\n"
    "0.2 payload TempHal temp fff60001000200ff00000bb8\n0.3 gps none\n0.3 radar none\n0.4 radar 1 2 3 4\n"
    "0.5 kill GpsHal\n0.6 start GpsHal\n0.7 gps fix -1 -2 3 4 5\n0.8 input lights on siren on door on\n"
    "0.9 crash on\n1 covert on\n1 covert off\n1.1 bookmark\n1.2 quality 2 1x2 3 4\n1.3 record stop\n"
    "1.4 record start\n1.5 camera entries 1 2 3 4 0 2 0 0 0\n1.6 stream 3 7\n"
    "1.7 live 5 on 7 10.1.2.3 99 hq\n2.5 ping\n2.5 quit\n";

// The SQL for each table; "!" stands for its name.
std::string ForEachTable(const std::string& sql) {
  std::string all;
  for (const store::Table& table : store::kTables) {
    std::string one = sql;
    for (std::size_t at = 0; (at = one.find('!', at)) != std::string::npos;) one.replace(at, 1, table.name);
    all += one;
  }
  return all;
}

// The recording with the table's first page overwritten.
std::string Damaged(const std::string& path, const std::string& table) {
  Connection rows(path);
  const std::size_t size = std::stoul(rows.Rows("PRAGMA page_size"));
  const std::size_t page =
      std::stoul(rows.Rows("SELECT rootpage FROM sqlite_schema WHERE name='" + table + "'"));
  return TextOfFile(path).replace((page - 1) * size, size, size, 'x');
}

// The names and contents of all files, to see that nothing was changed or left there.
std::map<std::string, std::string> FilesIn(const std::string& directory) {
  std::map<std::string, std::string> files;
  for (const auto& file : std::filesystem::directory_iterator(directory)) {
    files[file.path()] =
        TextOfFile(file.path()) + std::to_string(file.last_write_time().time_since_epoch().count());
  }
  return files;
}

class Replay : public testing::Test {
 protected:
  void Record(const std::string& drive, const std::string& speed) {
    first_.Drive(drive);
    ASSERT_EQ(first_.Run({"--speed", speed}), 0) << first_.Output();
  }
  void ExpectTheSameAgain(const std::vector<std::string>& arguments = {},
                          const std::vector<std::string>& options = {}) {
    BenchRun again;
    ASSERT_EQ(again.Replay(first_.Path("mnt/metadata"), arguments), 0) << again.Output();
    const Ran diff = Diff(first_.Recording(), again.Recording(), options);
    EXPECT_EQ(diff.status, 0) << diff.out << diff.said;
    EXPECT_THAT(diff.out, HasSubstr(" records are alike, 0 differences\n"));
  }

  BenchRun first_;
};

TEST_F(Replay, RecordsTheDefaultDriveAgain) {
  Record(TextOfFile(DEFAULT_DRIVE), "20");
  ExpectTheSameAgain();
  ExpectTheSameAgain({"--speed", "1"});  // with its ticks moved to now
}

TEST_F(Replay, RecordsWhatADriveCannotWriteAndTicksThatWrap) {
  Record(kAwkwardDrive, "5");
  const std::string wrap = ForEachTable(
      "UPDATE ! SET sender_tick=(sender_tick+4294967200-(SELECT min(sender_tick) FROM state WHERE "
      "sender_tick>0))&4294967295 WHERE sender_tick>10000;");
  ASSERT_EQ(Connection(first_.Recording()).Rows(wrap), "");
  ExpectTheSameAgain();
}

// The first run is cut off by a death of MetadataMgr, the second has a clean end.
TEST_F(Replay, PlaysAllRunsAndEndsEachAsItEnded) {
  first_.Drive("0 input brakes on\n0.1 bookmark\n2 ping\n100 quit\n");
  first_.Start();
  ASSERT_TRUE(first_.Said(" ping: answered")) << first_.Output();
  first_.Signal(SIGKILL);
  (void)first_.Finish();
  Record("0 crash on\n0.1 bookmark\n0.3 quit\n", "1");
  const std::string recordings = first_.Path("mnt/metadata");
  const auto before = FilesIn(recordings);
  BenchRun again;
  ASSERT_EQ(again.Replay(recordings), 0) << again.Output();
  EXPECT_EQ(FilesIn(recordings), before);
  EXPECT_THAT(again.Output(),
              AllOf(StartsWith("run 1: the recording was cut off; MetadataMgr is killed at the end\n"),
                    HasSubstr("MetadataMgr: signal 9"), HasSubstr("run 2 of 2"), HasSubstr("exit status 0")));
  const Ran diff = Diff(recordings, again.Path("mnt/metadata"), {"--ignore", "previous-run"});
  EXPECT_EQ(diff.status, 0) << diff.out;
  const std::vector<std::string> kParts[] = {{"--run", "2"}, {"--from", "crash"}, {"--from", "bookmark:2"}};
  for (const auto& part : kParts) {
    BenchRun second;
    ASSERT_EQ(second.Replay(recordings, part), 0) << second.Output();
    EXPECT_EQ(Count(second.Output(), "Drive of "), 1U) << second.Output();
    EXPECT_THAT(second.Output(), HasSubstr("run 2 of 2"));
  }
}

// A payload waits until it is recorded, so that the order is certain.
TEST_F(Replay, PlaysAStretchAndSomeSources) {
  Record(
      "before temp 0 5\n0 payload TempHal temp 001400140014000600000f9f\n0 input brakes on\n0.1 bookmark\n"
      "0.2 temp 0 7\n0.2 payload TempHal temp 001400140014000800000fa0\n0.2 input aux on\n"
      "0.3 payload AccelHal crash 0100000fa1\n0.4 temp 0 9\n0.6 quit\n",
      "1");
  BenchRun part;
  ASSERT_EQ(part.Replay(first_.Recording(), {"--from", "bookmark", "--to", "crash", "--without", "inputs"}),
            0)
      << part.Output();
  Connection rows(part.Recording());
  EXPECT_EQ(rows.Rows("SELECT event, temperature FROM temperature WHERE sensor=0 AND event<2 ORDER BY seq"),
            "0|6\n1|7\n1|8\n");
  EXPECT_EQ(rows.Rows("SELECT signal, sender_tick FROM state WHERE active AND signal<>64 AND event<2"),
            "66|4001\n");
}

// A recording written as a drive has the same bytes: only the ticks of arrival are new.
TEST_F(Replay, IsTheSameAsAnExactDrive) {
  Record(kAwkwardDrive, "5");
  const std::string path = first_.Path("exact.drive");
  const Ran written = RunVehicleBench({"drive", first_.Recording(), "--exact", "-o", path});
  ASSERT_EQ(written.status, 0) << written.said;
  BenchRun again;
  again.Drive(TextOfFile(path));
  ASSERT_EQ(again.Run({"--speed", "100"}), 0) << again.Output();
  EXPECT_EQ(Diff(first_.Recording(), again.Recording()).out,
            Diff(first_.Recording(), first_.Recording()).out);
}

TEST(Field, NoPlaceIsRecordedBeforeTheFirstFix) {
  BenchRun bench;
  bench.Drive(TextOfFile(FIELD "/first-fix.drive"));
  ASSERT_EQ(bench.Run({"--speed", "100"}), 0) << bench.Output();
  Connection rows(bench.Recording());
  EXPECT_EQ(rows.Rows("SELECT valid FROM gps_state WHERE event<2 ORDER BY seq"), "0\n0\n1\n1\n");
  EXPECT_EQ(rows.Rows("SELECT latitude_e4min, longitude_e4min FROM gps WHERE event<2 ORDER BY seq"),
            "30504122|2608266\n30504122|2608265\n");
}

struct Bad {
  const char* name;
  std::string content;
  std::string sql;
  int status;
  const char* said;
};

TEST_F(Replay, SaysFirstWhatIsWrongWithARecording) {
  Record("0 input brakes on\n0.1 ping\n0.1 quit\n", "1");
  const std::string whole = TextOfFile(first_.Recording());
  const Bad kCases[] = {
      {"lost.db", whole, "INSERT INTO loss VALUES(9999,9999999999,NULL,1,'gps',1,2,7)", 0,
       "7 records were lost when it was recorded; they cannot be played\n"},
      {"cut.db", whole.substr(0, whole.size() - 512), "", 1,
       "cut.db: it is cut short; what is left is read\n"},
      {"other.db", whole, "ALTER TABLE state ADD COLUMN more INTEGER; PRAGMA user_version=3", 0, "schema 3"},
      {"middle.db", Damaged(first_.Recording(), "gps"), "", 1,
       "middle.db: table gps cannot be read: database disk image is malformed\nDrive of "},
      {"schema1.db", "", TextOfFile(SCHEMA1), 0, "schema 1, this program knows 2"},
      {"state.db", whole, ForEachTable("DELETE FROM ! WHERE event=2;"), 0,
       "the recording has no full state; it is played from its first event on\nDrive of "},
      {"start.db", whole, ForEachTable("DELETE FROM ! WHERE event>0;"), 1,
       "the recording has no full state and no events; there is nothing to play\n"},
      {"text.db", std::string(5000, 'x'), "", 1,
       "text.db: file is not a database\nthere is nothing to play\n"},
      {"nothing.db", "SQLite format 3", "", 1, "there is nothing to play\n"},
  };
  const TempDir directory;
  for (const Bad& bad : kCases) {
    SCOPED_TRACE(bad.name);
    const std::string path = directory.Write(bad.name, bad.content);
    ASSERT_EQ(bad.sql.empty() ? "" : Connection(path).Rows(bad.sql), "");
    const auto before = FilesIn(directory.Path(""));
    BenchRun again;
    EXPECT_EQ(again.Replay(path), bad.status) << again.Output();
    EXPECT_THAT(again.Output(), HasSubstr(bad.said));
    EXPECT_EQ(FilesIn(directory.Path("")), before);
  }
}

}  // namespace
