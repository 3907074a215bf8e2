#include "StoreFixture.h"
#include "support/LogCapture.h"

namespace {

sqlite3* latest = nullptr;  // the last opened connection

extern "C" int NoteConnection(sqlite3* handle, const char** /*error*/, const sqlite3_api_routines* /*api*/) {
  latest = handle;
  return SQLITE_OK;
}

class DoubtTest : public StoreTest {
 protected:
  // Opens the store and keeps its connection.
  void Open() {
    sqlite3_auto_extension(reinterpret_cast<void (*)()>(NoteConnection));
    StoreTest::Open();
    sqlite3_reset_auto_extension();
    connection_ = latest;
  }

  // The next commits take effect but report an error.
  void LetCommitsFail(int count) {
    failures_ = count;
    const auto fail = [](void* context, sqlite3*, const char*, int) {
      return --static_cast<DoubtTest*>(context)->failures_ >= 0 ? SQLITE_IOERR : SQLITE_OK;
    };
    sqlite3_wal_hook(connection_, fail, this);
  }

  std::string Bookmarks() const { return Rows("SELECT sender_tick FROM bookmark ORDER BY seq"); }

 private:
  sqlite3* connection_ = nullptr;
  int failures_ = 0;
};

TEST_F(DoubtTest, CommitsThatFailedAndTookEffectAreNotRepeated) {
  Open();
  LetCommitsFail(3);
  const LogCapture log;
  for (unsigned int i = 1; i <= 6; ++i) {
    Store().ReportBookmark(i);
    if (i == 1) {
      EXPECT_EQ(Bookmarks(), "1\n") << "took effect";
    }
    Temperature(static_cast<int>(i));
    After(50);
  }
  After(500);
  EXPECT_EQ(Bookmarks(), "1\n2\n3\n4\n5\n6\n");
  EXPECT_EQ(Temperatures(), "1\n2\n3\n4\n5\n6\n");
  EXPECT_EQ(Rows("SELECT count(*), max(seq) FROM record"),
            Rows("SELECT max(last_seq), max(last_seq) FROM seal"));
  EXPECT_EQ(log.Lines(" fails: "), 1);
  EXPECT_EQ(log.Lines(" works again"), 1);
}

TEST_F(DoubtTest, AStatementThatFailsLeavesNoTransactionOpen) {
  Open();
  // Takes the number of the next record.
  const std::string next = Rows("SELECT 1 + max(seq) FROM record");
  Connection other(File(1));
  EXPECT_EQ(other.Rows("INSERT INTO bookmark VALUES(" + next + ",0,NULL,2)"), "");
  const LogCapture log;
  Store().ReportBookmark(1);
  EXPECT_EQ(log.Lines(" fails: constraint failed"), 1);
  EXPECT_EQ(other.Rows("DELETE FROM bookmark"), "") << "the file is not locked";
  After(50);
  EXPECT_EQ(Bookmarks(), "1\n");
}

}  // namespace
