// The content of copies of a recording.
#include "CopyFixture.h"
#include "Items.h"

namespace {

constexpr const char* kTemperatures = "SELECT group_concat(temperature,' ') FROM temperature WHERE event=1";

struct RangeCase {
  unsigned int first;
  unsigned int last;
  const char* temperatures;
};

class CopyRange : public CopyTest {
 protected:
  void ExpectCopies(std::initializer_list<RangeCase> cases) {
    for (const RangeCase& c : cases) {
      EXPECT_EQ(CopyAndRead(c.first, c.last, kTemperatures), c.temperatures) << c.first << ' ' << c.last;
    }
  }
};

TEST_F(CopyRange, IsTheNewestStretchThatTheTicksMean) {
  // The tick wraps twice, the last time 300 s ago.
  const unsigned int ticks[] = {3'000'000'000, 4'200'000'000, 100'000, 2'000'000'000,
                                4'100'000'000, 150'000,       300'000};
  clock_.tick = ticks[0];
  Open();
  int value = 0;
  for (const unsigned int tick : ticks) {
    At(tick);
    Temperature(++value);
  }
  ExpectCopies({
      {kFromBeginning, 150'000, "1 2 3 4 5 6\n"},
      {kFromBeginning, 4'200'000'000, "1 2 3 4 5\n"},
      {150'001, kToEnd, "7\n"},
      {4'200'000'000, kToEnd, "6 7\n"},
      {100'000, 150'000, "6\n"},
      {2'000'000'000, 4'100'000'000, "4 5\n"},
      {2'000'000'000, 4'099'999'999, "4\n"},
      {4'000'000'000, 200'000, "5 6\n"},
      {2'500'000'000, 2'000'000'000, "5 6 7\n"},
      {200'000, 250'000, "NULL\n"},
  });
}

TEST_F(CopyRange, MayHaveEndsThatTheRunNeverSaw) {
  Open();  // at tick 10,000
  for (short i = 1; i <= 3; ++i, After(1000)) Temperature(i);
  ExpectCopies({
      {kFromBeginning, kToEnd, "1 2 3\n"},
      {kFromBeginning, 9'999, "not copied"},
      {kFromBeginning, 20'000, "1 2 3\n"},
      {9'000, 11'000, "1 2\n"},
      {4'294'900'000, kToEnd, "1 2 3\n"},
      {4'294'900'000, 11'000, "1 2\n"},
      {12'500, kToEnd, "NULL\n"},
      {13'001, kToEnd, "not copied"},
      {13'001, 14'000, "not copied"},
      {8'000, 9'999, "not copied"},
      {11'001, 11'000, "3\n"},
  });
  Close();
  ExpectCopies({{kFromBeginning, kToEnd, "not copied"}});  // no run is current
  Open();
  Temperature(5);
  ExpectCopies({{kFromBeginning, kToEnd, "5\n"}});
}

TEST_F(CopyTest, IsARecordingThatStandsAlone) {
  Open();
  unsigned char mac[] = {0, 1, 2, 3, 4, 5};
  Store().ReportMac(mac, true);
  Store().ReportSystemSerialNum("SN-1");
  Store().ReportConfiguration(true);
  Store().ReportShutdownDataAtStartup();
  Brakes(true);
  Store().ReportTemp(e_TempSensors{1}, 11, true, 7);
  Store().ReportTemp(e_TempSensors{2}, 12, false, 8);
  After(1000);
  Store().ReportTemp(e_TempSensors{1}, 21, true, 9);
  At(20'000);
  Brakes(false);
  After(1000);
  Store().ReportBookmark(1);
  Temperature(30);  // not committed yet
  ASSERT_TRUE(Copy(15'000));

  EXPECT_EQ(InCopy("PRAGMA integrity_check; PRAGMA application_id; PRAGMA user_version; PRAGMA journal_mode"),
            "ok\n1296909378\n2\ndelete\n");
  ExpectSame("SELECT type, name, sql FROM sqlite_master ORDER BY name");
  ExpectSame("SELECT * FROM tag_name");
  ExpectSame("SELECT hex(id), length(id) FROM run");
  ExpectSame("SELECT * FROM timeline WHERE tick>=15000 AND event<>'restated' AND source<>'copy'");
  ExpectSame("SELECT name, value FROM configuration UNION ALL SELECT ended, file FROM previous_run");
  EXPECT_EQ(InCopy("SELECT tick||' '||coalesce(sender_tick,'')||' '||source||' '||text FROM timeline "
                   "WHERE event='restated' AND source NOT IN ('store','previous run') ORDER BY seq"),
            "15000  clock set by system\n15000  device hardware address 00:01:02:03:04:05\n"
            "15000  device serial number SN-1\n15000 10000 brakes on\n15000 8 temperature 2 12\n"
            "15000 9 temperature 1 21\n")
      << "in the order of the originals";
  EXPECT_EQ(InCopy("SELECT text FROM timeline WHERE source='temperature 0'"), "30\n");
  EXPECT_EQ(InCopy("SELECT last_seq-(SELECT max(seq) FROM temperature), last_tick FROM progress; "
                   "SELECT count(*)=max(seq)-min(seq)+1, min(seq)=(SELECT min(seq) FROM clock) FROM record"),
            "1|21000\n1|1\n")
      << "numbered without a gap, the clock first, the origin last";
  EXPECT_EQ(InCopy("SELECT tick, sender_tick, first_file, last_file, missing_files, first_asked, last_asked, "
                   "from_tick, to_tick FROM copy"),
            "21000|NULL|metadata.000001.db|metadata.000001.db|0|15000|4294967295|15000|21000\n");
}

TEST_F(CopyTest, TellsTheFactsThatWereRecordedLater) {
  Open();
  Temperature(1);
  After(1000);
  Store().ReportSystemSerialNum("SN-1");
  Store().ReportVersion(e_COMPONENT_Build, "2.0");
  EXPECT_EQ(
      CopyAndRead(kFromBeginning, 10'500,
                  "SELECT seq, tick, event, serial FROM serial; SELECT tick, event, version FROM version"),
      "3|10500|2|SN-1\n10500|2|2.0\n");
}

class CopyOverFiles : public CopyTest {
 protected:
  // Records at least four files, with a record every 100 ms.
  void RecordFiles() {
    options_.maxFileBytes = 1;
    Open();
    Store().ReportTemp(e_TempSensors{7}, 77, true, 1);
    for (short i = 1; !Exists(4); ++i, After(100)) {
      for (int n = 0; n < 20; ++n) Temperature(i);
    }
    After(1000);
  }
  std::int64_t BeginOf(int number) const { return std::stoll(Rows("SELECT min(tick) FROM clock", number)); }
};

TEST_F(CopyOverFiles, TakesFromAllThatTheRangeTouches) {
  RecordFiles();
  const auto first = static_cast<unsigned int>(BeginOf(2) + 150);
  const auto last = static_cast<unsigned int>(BeginOf(4));
  ASSERT_TRUE(Copy(first, last));
  std::string expected;
  const std::string select =
      "SELECT seq, tick, temperature FROM temperature WHERE event<2 AND tick BETWEEN " +
      std::to_string(first) + " AND " + std::to_string(last) + " ORDER BY seq";
  for (int number = 1; number <= 4; ++number) expected += Rows(select, number);
  EXPECT_EQ(InCopy(select), expected);
  EXPECT_EQ(
      InCopy("SELECT count(DISTINCT tick) > 10 FROM temperature; SELECT first_file, last_file FROM copy"),
      "1\nmetadata.000002.db|metadata.000004.db\n");
  EXPECT_EQ(InCopy("SELECT tick, temperature FROM temperature WHERE sensor=7 LIMIT 1"),
            std::to_string(first) + "|77\n");

  EXPECT_EQ(CopyAndRead(kFromBeginning, kToEnd, "SELECT count(DISTINCT seq)=max(seq) FROM record"), "1\n")
      << "each once";
}

TEST_F(CopyOverFiles, SaysWhatIsMissing) {
  alters_ = true;
  RecordFiles();
  std::filesystem::remove(File(2));
  EXPECT_EQ(CopyAndRead(kFromBeginning, kToEnd,
                        "SELECT replace(text,store,'it') FROM copy JOIN timeline USING(seq)"),
            "of it, metadata.000001.db to metadata.000004.db, ticks 10000 to " + std::to_string(clock_.tick) +
                ", 1 files are missing\n");
  dir_.Write("metadata.000002.db", "something else");
  EXPECT_EQ(CopyAndRead(kFromBeginning, kToEnd, ""), "not copied");
  std::filesystem::copy_file(File(3), File(2), std::filesystem::copy_options::overwrite_existing);
  EXPECT_EQ(
      Rows("DROP TABLE copy; CREATE VIEW copy AS WITH RECURSIVE n(seq) AS (SELECT 1 UNION ALL SELECT seq "
           "FROM n) SELECT seq, 1 AS tick FROM n",
           2),
      "");
  EXPECT_EQ(CopyAndRead(kFromBeginning, kToEnd, ""), "not copied") << "a table without an end";
  EXPECT_EQ(Rows("DROP VIEW copy; CREATE TABLE copy(seq INTEGER, tick INTEGER)", 2), "");
  EXPECT_EQ(CopyAndRead(kFromBeginning, kToEnd, ""), "not copied") << "other columns";
  EXPECT_EQ(Names().count("copy.db.partial"), 0U);
}

TEST_F(CopyTest, HasTheTimesOfTheRecording) {
  clock_.utcMs = 0;  // 1970
  Open();
  Brakes(true);
  At(20'000);
  Brakes(false);
  At(30'000);
  Store().ReportGps(GpsAt(43'200'000, 30'000), 30'000, true);
  At(100'000);
  Brakes(true);
  const std::string times =
      "SELECT tick, utc, text FROM timeline WHERE source='brakes' AND event='event' AND tick ";
  for (const auto& [first, last] : {std::pair(15'000U, 25'000U), {15'000, 35'000}, {90'000, kToEnd}}) {
    const std::string range = times + "BETWEEN " + std::to_string(first) + " AND " + std::to_string(last);
    const std::string expected = Rows(range);
    EXPECT_NE(expected.find("|2024-05-01T1"), std::string::npos) << expected;
    EXPECT_EQ(CopyAndRead(first, last, range), expected);
  }
}

TEST_F(CopyTest, HasTheLossesWithin) {
  options_.maxPendingBytes = 4096;
  Open();
  Connection other(File(1));
  At(12'000);
  ASSERT_EQ(other.Rows("BEGIN IMMEDIATE"), "");
  EXPECT_FALSE([&] {
    Temperature(1);
    return Copy();
  }()) << "what was reported could not be in it";
  for (short i = 0; i < 1000; ++i) Temperature(i);
  At(20'000);
  ASSERT_EQ(other.Rows("ROLLBACK"), "");
  At(22'000);
  const char* const losses = "SELECT tick, event, lost_table, from_tick, to_tick FROM loss";
  EXPECT_EQ(CopyAndRead(11'000, 15'000, losses), "15000|2|temperature|12000|12000\n") << "recorded later";
  EXPECT_EQ(CopyAndRead(19'000, kToEnd, losses), "22000|1|temperature|12000|12000\n");
  EXPECT_EQ(CopyAndRead(kFromBeginning, 11'000, losses), "");
}

}  // namespace
