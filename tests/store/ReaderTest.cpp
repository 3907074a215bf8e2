#include <algorithm>

#include "StoreFixture.h"

namespace fs = std::filesystem;

namespace {

// A reader that keeps a transaction open.
class ReaderTest : public StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    Open();
    reader_ = std::make_unique<Connection>(File(1));
    ASSERT_EQ(reader_->Rows("BEGIN; SELECT count(*) FROM string"), "0\n");
  }

  // A lot, so that the log soon passes its bound of 4 MB.
  void RecordFor(int seconds) {
    const std::string text(1000, 'x');
    for (int i = 0; i < 2 * seconds; ++i) {
      for (int j = 0; j < 50; ++j) Store().ReportStringData(e_Tag_Filler, text.c_str());
      After(500);
      recorded_ += 50;
    }
  }
  std::uintmax_t LogBytes() const { return fs::file_size(File(1) + "-wal"); }
  std::string Count(int file = 1) const { return Rows("SELECT count(*) FROM string WHERE event=1", file); }

  std::unique_ptr<Connection> reader_;
  int recorded_ = 0;
};

TEST_F(ReaderTest, RecordingGoesOnAndThatTheLogGrowsIsSaidAndRecorded) {
  LogLines lines;
  RecordFor(60);
  const std::string said = lines.Take();
  EXPECT_NE(said.find("A reader makes the log of "), std::string::npos);
  EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
  EXPECT_GT(LogBytes(), 4U << 20);
  EXPECT_EQ(Count(), std::to_string(recorded_) + "\n");
  EXPECT_EQ(reader_->Rows("SELECT count(*) FROM string"), "0\n") << "one moment in one transaction";
  EXPECT_EQ(Rows("SELECT pinned, log_bytes BETWEEN 4194305 AND 4400000 FROM log_pinned"), "1|1\n");
}

TEST_F(ReaderTest, WhenTheReaderLetsGoTheLogIsShortAgain) {
  RecordFor(60);
  reader_.reset();
  for (short i = 0; i < 2; ++i) {
    Temperature(i);
    After(500);
  }
  EXPECT_LT(LogBytes(), 1'200'000U);
  Temperature(2);
  LogLines lines;
  Close();  // where that is noticed
  EXPECT_EQ(lines.Take(), "");
  EXPECT_EQ(Rows("SELECT pinned, log_bytes < 1200000 FROM log_pinned"), "1|0\n0|1\n");
  EXPECT_EQ(Rows("SELECT text LIKE 'the log is short again: % bytes' FROM timeline WHERE source='store' "
                 "ORDER BY seq DESC LIMIT 1"),
            "1\n");
  EXPECT_FALSE(fs::exists(File(1) + "-wal"));
  EXPECT_EQ(Count(), std::to_string(recorded_) + "\n");
}

TEST_F(ReaderTest, AReaderThatStaysBeyondTheEndLeavesALogThatTheNextRunFoldsIn) {
  RecordFor(5);
  Store().ReportShutdownData();
  Close();
  EXPECT_TRUE(fs::exists(File(1) + "-wal"));
  CopyFilesTo("later/metadata");  // the reader never came to its end
  Open("later/metadata");
  Store().ReportShutdownDataAtStartup();
  Close();
  EXPECT_FALSE(fs::exists(File(1) + "-wal"));
  EXPECT_EQ(Rows("SELECT ended,file FROM previous_run", 2), "clean|metadata.000001.db\n");
  EXPECT_EQ(Count(), std::to_string(recorded_) + "\n");
}

TEST_F(StoreTest, AReaderCannotMakeTheLogGrowBeyondTheSizeOfAFile) {
  options_.maxFileBytes = 1U << 20;
  Open();
  Connection reader(File(1));
  reader.Rows("BEGIN; SELECT count(*) FROM string");
  const std::string text(1000, 'x');
  int recorded = 0;
  for (; !Exists(2) && recorded < 5000; ++recorded) {
    Store().ReportStringData(e_Tag_Filler, text.c_str());
    if (recorded % 50 == 0) After(500);
  }
  EXPECT_LT(fs::file_size(File(1)) + fs::file_size(File(1) + "-wal"), 1'200'000U);
  Store().ReportStringData(e_Tag_Filler, "in the next one");
  Close();
  EXPECT_EQ(Rows("SELECT text FROM string WHERE event=1", 2), "in the next one\n");
  EXPECT_EQ(Rows("SELECT count(*) FROM string"), std::to_string(recorded) + "\n");
}

TEST_F(StoreTest, ACopyWithoutItsLogIsSoundAndLacksWhatTheLogHad) {
  Open();
  fs::create_directory(dir_.Path("copy"));
  const std::string copy = dir_.Path("copy/metadata.000001.db");
  Temperature(1);
  After(500);
  fs::copy_file(File(1), copy);
  EXPECT_EQ(Connection(copy).Rows("PRAGMA integrity_check; SELECT count(*) FROM temperature"),
            "ok\nno such table: temperature")
      << "nothing was folded in yet";

  for (short i = 2; i <= 3000; ++i) {
    Temperature(i);
    After(500);
  }
  fs::copy_file(File(1), copy, fs::copy_options::overwrite_existing);
  Connection later(copy);
  EXPECT_EQ(later.Rows("PRAGMA integrity_check"), "ok\n");
  EXPECT_EQ(later.Rows("SELECT count(*) BETWEEN 1 AND 2999, count(*)=max(temperature) FROM temperature"),
            "1|1\n")
      << "all up to a moment";
  Open("copy/metadata");
  Store().ReportShutdownDataAtStartup();
  Close();
  EXPECT_EQ(Rows("SELECT ended,file FROM previous_run", 2), "cut off|metadata.000001.db\n");
}

}  // namespace
