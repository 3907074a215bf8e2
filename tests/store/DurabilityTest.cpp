// When records are committed. A record is committed when another connection sees it. A connection that holds
// the write lock stands for any reason why a write fails.
#include <functional>

#include "StoreFixture.h"
#include "support/LogCapture.h"

namespace {

class DurabilityTest : public StoreTest {
 protected:
  void Lock() { EXPECT_EQ(Other().Rows("BEGIN IMMEDIATE"), ""); }
  void Unlock() { EXPECT_EQ(Other().Rows("ROLLBACK"), ""); }
  std::string Bookmarks() const { return Rows("SELECT sender_tick FROM bookmark ORDER BY seq"); }

  const LogCapture log_;

 private:
  Connection& Other() {
    if (!other_) other_ = std::make_unique<Connection>(File(1));
    return *other_;
  }
  std::unique_ptr<Connection> other_;
};

TEST_F(DurabilityTest, ARecordIsCommittedWithTheFirstTickThatFindsIt500MsOld) {
  Open();
  After(1000);
  Temperature(1);
  After(300);
  Temperature(2);
  After(199);
  EXPECT_EQ(Temperatures(), "");
  After(1);
  EXPECT_EQ(Temperatures(), "1\n2\n");
  Temperature(3);
  After(499);
  EXPECT_EQ(Temperatures(), "1\n2\n");
  After(500);
  EXPECT_EQ(Temperatures(), "1\n2\n3\n");
}

TEST_F(DurabilityTest, RecordsFromBeforeAFirstTickThatIsLowerDoNotWaitForTheTicksToCatchUp) {
  DataStoreNormal store(dir_.Path("early"), options_);
  ASSERT_TRUE(store.Open());
  store.ReportTemp(e_TempSensors{0}, 1, true, 0);
  store.TimerTick(100);
  EXPECT_EQ(Connection(dir_.Path("early.000001.db")).Rows("SELECT temperature FROM temperature"), "1\n");
}

TEST_F(DurabilityTest, ACriticalRecordIsCommittedWithAllBeforeItWhenItsReportReturns) {
  Open();
  short value = 0;
  const auto commits = [&](const std::function<void()>& report) {
    After(1000);  // after the commit before
    Temperature(++value);
    report();
    return Rows("SELECT max(temperature) FROM temperature") == std::to_string(value) + "\n";
  };
  const auto commitsState = [&](e_Tag tag) {
    return commits([&] { Store().ReportStateData(tag, true, 1); });
  };
  for (const e_Tag tag : {e_Tag_RecordingStarted, e_Tag_RecordingStopped, e_Tag_CovertEntered,
                          e_Tag_CovertLeft, e_Tag_CrashDetected, e_Tag_CrashCleared}) {
    EXPECT_TRUE(commitsState(tag)) << tag;
  }
  for (const e_Tag tag : {e_Tag_BrakesOn, e_Tag_IgnitionOff}) EXPECT_FALSE(commitsState(tag)) << tag;
  EXPECT_TRUE(commits([&] { Store().ReportBookmark(1); }));
  EXPECT_TRUE(commits([&] { Store().WriteFullState(true); }));
  EXPECT_TRUE(commits([&] { Store().ReportShutdownData(); }));
}

TEST_F(DurabilityTest, ACriticalRecordRightAfterAnotherJoinsTheNextCommit) {
  Open();
  Store().ReportBookmark(1);
  EXPECT_EQ(Bookmarks(), "1\n");
  After(49);
  Store().ReportBookmark(2);
  Store().ReportBookmark(3);
  EXPECT_EQ(Bookmarks(), "1\n");
  After(1);
  EXPECT_EQ(Bookmarks(), "1\n2\n3\n");
  clock_.tick += 50;  // before the next turn of the loop
  Store().ReportBookmark(4);
  EXPECT_EQ(Bookmarks(), "1\n2\n3\n4\n");
}

TEST_F(DurabilityTest, ALotOfRecordsIsCommittedWithoutWaiting) {
  options_.maxPendingBytes = 65'536;
  Open();
  for (short i = 0; i < 1000; ++i) Temperature(i);
  EXPECT_NE(Temperatures(), "");
  Close();
  EXPECT_EQ(Rows("SELECT (SELECT count(*) FROM temperature), count(*) FROM loss"), "1000|0\n");
}

TEST_F(DurabilityTest, WhileWritingFailsNothingIsLostWithinTheBound) {
  Open();
  Lock();
  for (short i = 1; i <= 120; ++i, After(500)) Temperature(i);  // a minute
  EXPECT_EQ(Temperatures(), "");
  EXPECT_EQ(log_.Lines(" fails: database is locked"), 1);
  Unlock();
  After(500);
  After(500);
  EXPECT_EQ(log_.Lines(" works again"), 1);
  EXPECT_EQ(log_.Lines(""), 2) << log_.Text();
  EXPECT_EQ(Rows("SELECT count(*), count(DISTINCT temperature), max(temperature) FROM temperature"),
            "120|120|120\n");
  EXPECT_EQ(Rows("SELECT count(*) FROM loss"), "0\n");
}

TEST_F(DurabilityTest, ACriticalRecordHastensTheNextAttempt) {
  Open();
  for (unsigned int i = 1; i <= 2; ++i) {
    Lock();
    Temperature(1);
    if (i == 2) After(500);  // a commit has failed before
    Store().ReportBookmark(i);
    Unlock();
    After(49);
    EXPECT_EQ(Bookmarks(), i == 1 ? "" : "1\n");
    After(1);
    EXPECT_EQ(Bookmarks(), i == 1 ? "1\n" : "1\n2\n");
    After(1000);
  }
}

TEST_F(DurabilityTest, BeyondTheBoundTheOldestGoAndAreAccountedFor) {
  options_.maxPendingBytes = 16'384;
  Open();
  Lock();
  Store().ReportStateData(e_Tag_RecordingStarted, true, 1);
  for (short i = 0; i < 1000; ++i) {
    After(1);
    Temperature(i);
    Store().ReportSpeed(1, 5, true, 1, e_Tag_None);
  }
  Unlock();
  Close();
  EXPECT_EQ(Rows("SELECT text FROM timeline WHERE source='recording'"), "started\n");
  EXPECT_EQ(Rows("SELECT max(temperature), max(temperature)-min(temperature)+1=count(*) FROM temperature"),
            "999|1\n")
      << "the newest are there, without a gap";
  EXPECT_EQ(Rows("SELECT from_tick, to_tick+1 = (SELECT min(tick) FROM temperature), "
                 "count + (SELECT count(*) FROM temperature) FROM loss WHERE lost_table='temperature'"),
            "10001|1|1000\n");
  EXPECT_EQ(Rows("SELECT count + (SELECT count(*) FROM speed) FROM loss WHERE lost_table='speed'"), "1000\n");
  EXPECT_EQ(Rows("SELECT text LIKE 'lost % records of speed from tick 10001 to %' FROM timeline "
                 "WHERE text LIKE '%speed%'"),
            "1\n");
}

TEST_F(DurabilityTest, WhenOnlyCriticalRecordsAreLeftTheOldestOfThemGo) {
  options_.maxPendingBytes = 16'384;
  Open();
  Lock();
  for (unsigned int i = 0; i < 1000; ++i) Store().ReportBookmark(i);
  Unlock();
  Close();
  EXPECT_EQ(Rows("SELECT max(sender_tick) FROM bookmark"), "999\n");
  EXPECT_EQ(Rows("SELECT count + (SELECT count(*) FROM bookmark) FROM loss"), "1000\n");
}

TEST_F(DurabilityTest, WhatIsStillPendingAtTheEndIsSaid) {
  Open();
  Lock();
  Temperature(1);
  Temperature(2);
  Close();
  EXPECT_EQ(log_.Lines("Lost at the end: 2 records"), 1);
}

}  // namespace
