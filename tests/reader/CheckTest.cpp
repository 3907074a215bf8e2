// Provokes every finding of `metadata check`.
#include "ReaderFixture.h"

namespace fs = std::filesystem;
using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::MatchesRegex;

namespace {

struct Finding {
  const char* damage;  // SQL on a sound recording of ReaderTest::Drive; record 12 is its end
  const char* said;
};

constexpr Finding kFindings[] = {
    {"DELETE FROM temperature WHERE seq=8", ": 1 record is missing: 8; losses of 0 are recorded\n"},
    {"DELETE FROM bookmark", ": 2 records are missing, the first is 7; losses of 0 are recorded\n"},
    {"UPDATE run_end SET seq=13; INSERT INTO loss VALUES(12,12100,NULL,1,'gps',1,2,3); "
     "UPDATE seal SET last_seq=13 WHERE number=(SELECT max(number) FROM seal)",
     ": losses of 3 records are recorded, but 0 are missing\n"},
    {"INSERT INTO gps_state VALUES(8,11100,NULL,1,1)",
     ": record 8: table gps_state has a record of this number, too\n"},
    {"UPDATE bookmark SET tick=10050 WHERE seq=7",
     ": table bookmark: record 7: the tick goes back from 10100 to 10050\n"},
    {"UPDATE run_end SET seq=7; UPDATE bookmark SET seq=12 WHERE seq=7",
     ": table temperature: record 8: it stands behind the end of its run\n"},
    {"UPDATE clock SET seq=8; UPDATE temperature SET seq=1",
     ": table temperature: record 1: a file begins without a record of the clock\n"},
    {"UPDATE seal SET last_seq=99 WHERE number=(SELECT max(number) FROM seal)",
     ": record 99 was committed last, but the last is 12\n"},
    {"DELETE FROM progress; DELETE FROM seal", ": no commit is noted\n"},
    {"UPDATE camera SET event=3", ": table camera: record 5: event is none of 0, 1, 2\n"},
    {"UPDATE speed SET sender_tick=4294967296",
     ": table speed: record 4: sender_tick has more than 32 bits\n"},
    {"UPDATE state SET active=2 WHERE seq=3", ": table state: record 3: a flag is neither 0 nor 1\n"},
    {"UPDATE state SET signal=57 WHERE signal=56",
     ": table state: record 3: signal is not an even tag (and 1 more of this kind)\n"},
    {"UPDATE string SET tag=-1", ": table string: record 6: tag is not a tag\n"},
    {"INSERT INTO loss VALUES(13,12100,NULL,1,'nothing',1,2,1)",
     ": table loss: record 13: lost_table is no table\n"},
    {"INSERT INTO loss VALUES(13,12100,NULL,1,'gps',1,2,0)", ": table loss: record 13: a loss of nothing\n"},
    {"UPDATE clock SET clock_source='sun'",
     ": table clock: record 1: clock_source is neither system nor gps\n"},
    {"INSERT INTO previous_run VALUES(13,12100,NULL,1,'somehow','metadata.000009.db',1,1,1)",
     ": table previous_run: record 13: ended is none of none, clean, cut off, unreadable, damaged\n"},
};

TEST_F(ReaderTest, CheckFindsEachDamageAndNamesTheFirstBadRow) {
  Open();
  Drive();
  Store().ReportShutdownData();
  Close();
  ASSERT_EQ(Metadata({"check", File(1)}).out, "Good: 1 run, 1 file, 12 records\n");
  for (const Finding& finding : kFindings) {
    SCOPED_TRACE(finding.damage);
    const std::string damaged = dir_.Write("damaged/metadata.000001.db", dir_.Read("metadata.000001.db"));
    ASSERT_EQ(Connection(damaged).Rows(finding.damage), "");
    const Ran ran = Metadata({"check", damaged});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.out, HasSubstr(finding.said));
    EXPECT_THAT(ran.out,
                MatchesRegex(".*\n[1-9] findings?; what can be read: 1 run, 1 file, 1[0-3] records\n"));
  }
}

// A run of some records, then a second run, which records how the first ended.
class CheckRuns : public ReaderTest {
 protected:
  void SetUp() override {
    ReaderTest::SetUp();
    for (int i = 0; i < 2; ++i) {
      Open();
      Store().ReportShutdownDataAtStartup();
      Drive();
      Store().ReportShutdownData();
      Close();
    }
    ASSERT_EQ(Check().out, "Good: 2 runs, 2 files, 26 records\n");
  }
  Ran Check() { return Metadata({"check", dir_.Path("")}); }
};

TEST_F(CheckRuns, WhatTheNextRunSaysOfTheEndMustHold) {
  Rows("UPDATE previous_run SET ended='cut off'", 2);
  EXPECT_THAT(Check().out,
              HasSubstr("metadata.000001.db is said to have ended cut off, but it has a clean end\n"));
  Rows("UPDATE previous_run SET ended='clean'", 2);
  Rows(
      "DELETE FROM run_end; DELETE FROM seal; UPDATE progress SET last_seq=12, last_tick=12100; UPDATE state "
      "SET seq=1000 WHERE 0");
  EXPECT_THAT(Check().out,
              HasSubstr("000002.db: table previous_run: record 2: metadata.000001.db is said to end "
                        "with record 13 at tick 12100, but it ends with record 12 at tick 12100\n"));
  Rows("UPDATE progress SET last_seq=13");
  EXPECT_THAT(Check().out, HasSubstr("metadata.000001.db is said to have ended clean, but it has no end\n"));
}

TEST_F(CheckRuns, DamageIsSaidAndTheRestIsRead) {
  const std::string name = "metadata.000001.db";
  std::string bytes = dir_.Read(name);
  const std::size_t page = std::stoul(Rows("SELECT rootpage FROM sqlite_master WHERE name='speed'")) - 1;
  dir_.Write(name, bytes.replace(page * 1024, 1024, 1024, '\xFF'));
  const Ran ran = Check();
  EXPECT_EQ(ran.status, 1);
  EXPECT_THAT(ran.out, AllOf(HasSubstr("000001.db: damaged: "),
                             HasSubstr("table speed cannot be read: database disk image is malformed\n"),
                             HasSubstr(": 1 record is missing: 5; losses of 0 are recorded\n"),
                             HasSubstr("findings; what can be read: 2 runs, 2 files, 25 records\n")));
  const Ran dump = Dump({});
  EXPECT_EQ(dump.status, 1);
  EXPECT_THAT(dump.said, HasSubstr("table speed cannot be read: "));
  EXPECT_EQ(std::count(dump.out.begin(), dump.out.end(), '\n'), 12);
}

TEST_F(CheckRuns, ATruncatedFileGivesWhatIsLeft) {
  Open();
  for (short i = 0; i < 2000; ++i) Temperature(i);
  Close();
  fs::resize_file(File(3), fs::file_size(File(3)) - 10'240);
  const Ran ran = Metadata({"check", File(3)});
  EXPECT_EQ(ran.status, 1);
  EXPECT_THAT(ran.out,
              AllOf(HasSubstr("000003.db: it is cut short; what is left is read\n"),
                    HasSubstr("000003.db: damaged: "),
                    ContainsRegex("table temperature cannot be read after record 1[0-9][0-9][0-9]: "),
                    ContainsRegex("what can be read: 1 run, 1 file, 1[0-9][0-9][0-9] records\n")));
}

TEST_F(CheckRuns, WhatIsNotTheirsOrNotThereIsSaid) {
  Rows("PRAGMA application_id=1");
  EXPECT_THAT(Check().out, HasSubstr("000001.db: not a recording\n"));
  dir_.Write("metadata.000001.db", "this is no database, whatever its name says; so it is said");
  EXPECT_THAT(Check().out, AllOf(HasSubstr("000001.db: file is not a database\n"),
                                 HasSubstr("1 finding; what can be read: 1 run, 1 file, 13 records\n")));
  Rows("DELETE FROM clock", 2);
  EXPECT_THAT(Check().said, HasSubstr("000002.db: the begin of this run is in a file that is not given\n"));
  dir_.Write("empty/none", "");
  EXPECT_THAT(Metadata({"check", dir_.Path("empty")}).out, HasSubstr("empty: no recording in it\n"));
}

TEST_F(CheckRuns, AnotherSchemaIsReadAndWhatItMissesIsSaid) {
  Rows(
      "PRAGMA user_version=0; DROP VIEW timeline; DROP VIEW record; DROP TABLE live_stream; "
      "ALTER TABLE camera DROP COLUMN state; CREATE TABLE odd(seq INTEGER PRIMARY KEY, tick INTEGER, "
      "sender_tick INTEGER, event INTEGER, value INTEGER)");
  const Ran ran = Dump({"--source", "camera,brakes", "--format", "jsonl"});
  EXPECT_EQ(ran.status, 0);
  EXPECT_THAT(ran.said,
              MatchesRegex("metadata: .*000001.db: schema 0, this program knows 2: no column camera.state, "
                           "no table live_stream, unknown table odd\n"));
  EXPECT_THAT(ran.out, HasSubstr("\"source\":\"camera 2\",\"camera\":2}\n"));
}

}  // namespace
