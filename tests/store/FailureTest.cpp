#include "StoreFixture.h"

namespace {

// Another program that holds the write lock stands for every reason why writing fails.

TEST_F(StoreTest, ACriticalRecordThatCouldNotBeWrittenIsTriedAgainSoon) {
  Open();
  Connection other(File(1));
  other.Rows("BEGIN IMMEDIATE");
  Store().ReportBookmark(1);
  other.Rows("COMMIT");
  After(49);
  EXPECT_EQ(Rows("SELECT count(*) FROM bookmark"), "0\n");
  After(1);
  EXPECT_EQ(Rows("SELECT count(*) FROM bookmark"), "1\n");
}

TEST_F(StoreTest, ACriticalRecordHastensTheNextAttempt) {
  Open();
  Connection other(File(1));
  other.Rows("BEGIN IMMEDIATE");
  Temperature(1);
  After(500);
  Store().ReportBookmark(1);
  other.Rows("COMMIT");
  After(50);
  EXPECT_EQ(Rows("SELECT count(*) FROM bookmark"), "1\n");
}

TEST_F(StoreTest, BeyondTheBoundTheOldestGoAndAreAccountedFor) {
  options_.maxPendingBytes = 16'384;
  Open();
  {
    Connection other(File(1));
    other.Rows("BEGIN IMMEDIATE");
    Store().ReportStateData(e_Tag_RecordingStarted, true, 1);
    for (short i = 0; i < 1000; ++i) {
      clock_.tick += 1;
      Store().TimerTick(clock_.tick);
      Temperature(i);
      Store().ReportSpeed(1, 5, true, 1, e_Tag_None);
    }
  }
  Close();

  EXPECT_EQ(Rows("SELECT text FROM timeline WHERE source='recording'"), "started\n");
  EXPECT_EQ(Rows("SELECT max(temperature), max(temperature)-min(temperature)+1=count(*) FROM temperature"),
            "999|1\n")
      << "the newest are there, without a gap";
  EXPECT_EQ(Rows("SELECT lost_table, from_tick, count + (SELECT count(*) FROM temperature) FROM loss "
                 "WHERE lost_table='temperature'"),
            "temperature|10001|1000\n");
  EXPECT_EQ(Rows("SELECT count + (SELECT count(*) FROM speed) FROM loss WHERE lost_table='speed'"), "1000\n");
  EXPECT_EQ(Rows("SELECT l.to_tick+1 = (SELECT min(tick) FROM temperature) FROM loss l "
                 "WHERE lost_table='temperature'"),
            "1\n");
  EXPECT_EQ(Rows("SELECT text LIKE 'lost % records of speed from tick 10001 to %' FROM timeline "
                 "WHERE text LIKE '%speed%'"),
            "1\n");
}

TEST_F(StoreTest, WhenOnlyCriticalRecordsAreLeftTheOldestOfThemGo) {
  options_.maxPendingBytes = 16'384;
  Open();
  {
    Connection other(File(1));
    other.Rows("BEGIN IMMEDIATE");
    for (unsigned int i = 0; i < 1000; ++i) Store().ReportBookmark(i);
  }
  Close();
  EXPECT_EQ(Rows("SELECT max(sender_tick) FROM bookmark"), "999\n");
  EXPECT_EQ(Rows("SELECT count + (SELECT count(*) FROM bookmark) FROM loss"), "1000\n");
}

TEST_F(StoreTest, WhatIsStillPendingAtTheEndIsSaid) {
  Open();
  Connection other(File(1));
  other.Rows("BEGIN IMMEDIATE");
  Temperature(1);
  Temperature(2);
  LogLines lines;
  Close();
  EXPECT_NE(lines.Take().find("Lost at the end: 2 records"), std::string::npos);
}

}  // namespace
