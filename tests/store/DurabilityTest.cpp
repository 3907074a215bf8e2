#include <functional>

#include "StoreFixture.h"

namespace {

// What another connection sees is what has been committed.

TEST_F(StoreTest, ARecordIsCommittedWithTheFirstTickThatFindsIt500MsOld) {
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

TEST_F(StoreTest, RecordsFromBeforeAFirstTickThatIsLowerDoNotWaitForTheTicksToCatchUp) {
  DataStoreNormal store(dir_.Path("metadata"), options_);
  ASSERT_TRUE(store.Open());
  store.ReportTemp(e_TempSensors{0}, 1, true, 0);
  store.TimerTick(100);
  EXPECT_EQ(Connection(dir_.Path("metadata.000001.db")).Rows("SELECT temperature FROM temperature"), "1\n");
}

TEST_F(StoreTest, ACriticalRecordIsCommittedWithAllBeforeItWhenItsReportReturns) {
  Open();
  short value = 0;
  const auto commits = [&](const std::function<void()>& report) {
    After(1000);  // after the one before
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
  for (const e_Tag tag : {e_Tag_BrakesOn, e_Tag_IgnitionOff, e_Tag_Started})
    EXPECT_FALSE(commitsState(tag)) << tag;
  EXPECT_FALSE(commits([&] { Store().ReportStringData(e_Tag_Filler, "x"); }));
  EXPECT_TRUE(commits([&] { Store().ReportBookmark(1); }));
  EXPECT_TRUE(commits([&] { Store().WriteFullState(true); }));
  EXPECT_TRUE(commits([&] { Store().ReportShutdownData(); }));
}

TEST_F(StoreTest, ACriticalRecordRightAfterAnotherJoinsTheNextCommit) {
  const auto bookmarks = [this] { return Rows("SELECT sender_tick FROM bookmark ORDER BY seq"); };
  Open();
  Store().ReportBookmark(1);
  EXPECT_EQ(bookmarks(), "1\n");
  After(49);
  Store().ReportBookmark(2);
  Store().ReportBookmark(3);
  EXPECT_EQ(bookmarks(), "1\n");
  After(1);
  EXPECT_EQ(bookmarks(), "1\n2\n3\n");
  clock_.tick += 50;  // the loop has not turned yet
  Store().ReportBookmark(4);
  EXPECT_EQ(bookmarks(), "1\n2\n3\n4\n");
}

TEST_F(StoreTest, ALotOfRecordsIsCommittedWithoutWaiting) {
  options_.maxPendingBytes = 65'536;
  Open();
  for (short i = 0; i < 1000; ++i) Temperature(i);
  EXPECT_NE(Rows("SELECT count(*) FROM temperature"), "0\n");
  Close();
  EXPECT_EQ(Rows("SELECT count(*) FROM temperature"), "1000\n");
  EXPECT_EQ(Rows("SELECT count(*) FROM loss"), "0\n");
}

}  // namespace
