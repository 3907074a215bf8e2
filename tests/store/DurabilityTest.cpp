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

struct CriticalCase {
  const char* name;
  void (*report)(DataStore& store);
  bool critical;
};

class CriticalTest : public StoreTest, public testing::WithParamInterface<CriticalCase> {};

TEST_P(CriticalTest, IsCommittedWithAllBeforeItWhenItsReportReturns) {
  Open();
  Temperature(1);
  GetParam().report(Store());
  EXPECT_EQ(Temperatures(), GetParam().critical ? "1\n" : "");
}

INSTANTIATE_TEST_SUITE_P(
    Records, CriticalTest,
    testing::Values(
        CriticalCase{"RecordingStarted",
                     [](DataStore& s) { s.ReportStateData(e_Tag_RecordingStarted, true, 1); }, true},
        CriticalCase{"RecordingStopped",
                     [](DataStore& s) { s.ReportStateData(e_Tag_RecordingStopped, true, 1); }, true},
        CriticalCase{"CovertEntered", [](DataStore& s) { s.ReportStateData(e_Tag_CovertEntered, true, 1); },
                     true},
        CriticalCase{"CovertLeft", [](DataStore& s) { s.ReportStateData(e_Tag_CovertLeft, true, 1); }, true},
        CriticalCase{"CrashDetected", [](DataStore& s) { s.ReportStateData(e_Tag_CrashDetected, true, 1); },
                     true},
        CriticalCase{"CrashCleared", [](DataStore& s) { s.ReportStateData(e_Tag_CrashCleared, true, 1); },
                     true},
        CriticalCase{"Bookmark", [](DataStore& s) { s.ReportBookmark(1); }, true},
        CriticalCase{"CleanEnd", [](DataStore& s) { s.ReportShutdownData(); }, true},
        CriticalCase{"FullState", [](DataStore& s) { s.WriteFullState(true); }, true},
        CriticalCase{"Brakes", [](DataStore& s) { s.ReportStateData(e_Tag_BrakesOn, true, 1); }, false},
        CriticalCase{"Ignition", [](DataStore& s) { s.ReportStateData(e_Tag_IgnitionOff, true, 1); }, false},
        CriticalCase{"Text", [](DataStore& s) { s.ReportStringData(e_Tag_Filler, "x"); }, false}),
    [](const auto& param) { return std::string(param.param.name); });

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
