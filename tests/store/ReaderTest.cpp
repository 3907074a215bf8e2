#include "StoreFixture.h"
#include "support/LogCapture.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* kPin = "BEGIN; SELECT count(*) FROM string";

class ReaderTest : public StoreTest {
 protected:
  void Record(int turns) {
    const std::string text(1000, 'x');
    for (int i = 1; i <= 50 * turns; ++i, ++recorded_) {
      Store().ReportStringData(e_Tag_Filler, text.c_str());
      if (i % 50 == 0) After(500);
    }
  }
  std::uintmax_t LogBytes() const { return fs::file_size(File(1) + "-wal"); }
  void ExpectAllRecorded() const {
    EXPECT_EQ(Rows("SELECT count(*) FROM string WHERE event=1"), std::to_string(recorded_) + "\n");
  }

  int recorded_ = 0;
};

TEST_F(ReaderTest, RecordingGoesOnAndThatTheWalGrowsAndShrinksIsSaidAndRecorded) {
  Open();
  auto reader = std::make_unique<Connection>(File(1));
  EXPECT_EQ(reader->Rows(kPin), "0\n");
  const LogCapture log;
  Record(100);  // soon exceeds the WAL's limit of 4 MB
  EXPECT_EQ(log.Lines("A reader makes the WAL of "), 1);
  EXPECT_GT(LogBytes(), 4U << 20);
  ExpectAllRecorded();
  EXPECT_EQ(reader->Rows("SELECT count(*) FROM string"), "0\n") << "one moment in one transaction";
  EXPECT_EQ(Rows("SELECT pinned, log_bytes BETWEEN 4194305 AND 4400000 FROM log_pinned"), "1|1\n");

  reader.reset();
  for (short i = 0; i < 2; ++i, After(500)) Temperature(i);
  EXPECT_LT(LogBytes(), 1'200'000U);
  Temperature(2);
  Close();  // the close detects the short WAL
  EXPECT_EQ(log.Lines(""), 1) << log.Text();
  EXPECT_EQ(Rows("SELECT text LIKE 'the WAL is short again: % bytes' FROM timeline WHERE source='store'"),
            "0\n1\n");
  EXPECT_FALSE(fs::exists(File(1) + "-wal"));
}

TEST_F(ReaderTest, CannotMakeTheWalGrowBeyondTheSizeOfAFile) {
  options_.maxFileBytes = 1U << 20;
  Open();
  Connection reader(File(1));
  reader.Rows(kPin);
  while (!Exists(2) && recorded_ < 5000) Record(1);
  EXPECT_LT(fs::file_size(File(1)) + LogBytes(), 1'300'000U);
  ExpectAllRecorded();
}

}  // namespace
