// What a replay plays of recordings, and how it begins and ends.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>

#include "ReplayFixture.h"
#include "support/Connection.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

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
  BenchRun first_;
};

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
  ASSERT_EQ(Connection(first_.Recording())
                .Rows("WITH RECURSIVE n(i) AS (VALUES (1) UNION ALL SELECT i+1 FROM n WHERE i<1000) "
                      "INSERT INTO temperature SELECT 100000+i, 1, NULL, 1, 9, 0 FROM n"),
            "");
  const std::string more = TextOfFile(first_.Recording());  // the last pages hold these rows
  const Bad kCases[] = {
      {"lost.db", whole, "INSERT INTO loss VALUES(9999,9999999999,NULL,1,'gps',1,2,7)", 0,
       "7 records were lost when it was recorded; they cannot be played\n"},
      {"cut.db", more.substr(0, more.size() - 4096), "", 1,
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
