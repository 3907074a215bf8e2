#include <cstdio>
#include <sstream>

#include "DiskFiles.h"
#include "FailingMedium.h"
#include "Recordings.h"
#include "support/LogCapture.h"

namespace {

constexpr int kStep = MM_FAULT_STEP;  // 1: every operation

constexpr const char* kEarlierRun = "metadata.000001.db";

constexpr Fault kFaults[] = {
    {"WriteEioOnce", false, FileOp::kWrite, SQLITE_IOERR_WRITE, false, false, 1},
    {"WriteEioForEver", false, FileOp::kWrite, SQLITE_IOERR_WRITE, false, true, 1},
    {"WriteEnospcOnce", false, FileOp::kWrite, SQLITE_FULL, false, false, 2},
    {"WriteEnospcForEver", false, FileOp::kWrite, SQLITE_FULL, false, true, 2},
    {"WriteHalfOnce", false, FileOp::kWrite, SQLITE_FULL, true, false, 3},
    {"WriteHalfForEver", false, FileOp::kWrite, SQLITE_FULL, true, true, 3},
    {"SyncEioOnce", false, FileOp::kSync, SQLITE_IOERR_FSYNC, false, false},
    {"SyncEioForEver", false, FileOp::kSync, SQLITE_IOERR_FSYNC, false, true},
    {"SyncEnospcOnce", false, FileOp::kSync, SQLITE_FULL, false, false},
    {"OpenOnce", false, FileOp::kOpen, SQLITE_CANTOPEN, false, false},
    {"OpenForEver", false, FileOp::kOpen, SQLITE_CANTOPEN, false, true},
    {"TruncateOnce", false, FileOp::kTruncate, SQLITE_IOERR_TRUNCATE, false, false},
    {"TruncateForEver", false, FileOp::kTruncate, SQLITE_IOERR_TRUNCATE, false, true},
    {"DeleteOnce", false, FileOp::kDelete, SQLITE_IOERR_DELETE, false, false},
    {"DeleteForEver", false, FileOp::kDelete, SQLITE_IOERR_DELETE, false, true},
    {"AnyEioForEver", true, FileOp::kWrite, SQLITE_IOERR, false, true, 1},
};

// Commits of all kinds, and what makes a file full.
void Work(Usage& usage) {
  for (int i = 0; i < 6; ++i) {
    usage.Temperature();
    for (int text = 0; text < 8; ++text) usage.Text(1000);
    if (i % 2 == 1) usage.Bookmark();
    if (i % 4 == 3) usage.Covert();
    usage.Turn(i % 3 == 1 ? 60 : 500);
  }
}

// One line each time that writing begins to fail or works again, in turn.
bool SaidInTurn(const std::string& text) {
  bool failing = false;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    const bool fails = line.find("Recording to ") != std::string::npos;
    const bool works = line.find(" works again") != std::string::npos;
    if ((fails && failing) || (works && !failing)) return false;
    failing = fails || (failing && !works);
  }
  return true;
}

class FailingMediumTest : public testing::TestWithParam<Fault> {
 protected:
  // Runs a stretch on a medium whose Nth operation fails; false when it has less.
  bool Fails(int nth) {
    WriteFiles(before_, "", dir_);
    FailingMedium medium(GetParam(), nth);
    const LogCapture log;
    const WatchedVfs vfs(medium);
    StoreOptions options;
    options.maxFileBytes = 1;  // the least there is
    options.maxPendingBytes = 16'384;
    Usage usage(dir_.Path("metadata"), options);
    if (!Open(usage, medium)) return true;
    Work(usage);
    medium.Heal();
    usage.Turn(600);
    usage.Bookmark();
    usage.Turn(600);
    usage.Close();
    Check(usage, log.Text());
    return medium.Failed();
  }

 private:
  bool Open(Usage& usage, FailingMedium& medium) {
    bool open = usage.Open() || usage.Open();
    if (!open) {
      EXPECT_TRUE(GetParam().forEver);
      medium.Heal();
      open = usage.Open();
    }
    EXPECT_TRUE(open);
    return open;
  }

  void Check(const Usage& usage, const std::string& log) {
    Recordings recordings(dir_, kEarlierRun);
    EXPECT_EQ(recordings.Fault(), "");
    const bool lostAtEnd = log.find("Lost at the end: ") != std::string::npos;
    if (!lostAtEnd) {
      EXPECT_EQ(recordings.Holes(), 0);
    }
    for (const char* table : {"temperature", "string", "bookmark", "state"}) {
      const long missing = recordings.Missing(usage.Reports(), table);
      EXPECT_GE(missing, 0) << table << ": doubled";
      if (!lostAtEnd) {
        EXPECT_LE(missing, recordings.Lost(table)) << table << ": gone without a word";
      }
    }
    EXPECT_TRUE(SaidInTurn(log)) << log;
    EXPECT_EQ(Connection(dir_.Path(kEarlierRun), kPlainVfs).Rows("SELECT count(*) FROM bookmark"), "10\n");
    lost_ += recordings.Lost();
    files_ = recordings.Files();
  }

 protected:
  TempDir dir_;
  DiskState before_ = RunWithoutClose();
  long lost_ = 0;
  std::size_t files_ = 0;
};

TEST_P(FailingMediumTest, IsSurvivedWhicheverOperationItHits) {
  // There are hundreds of writes: each is hit by one of the three ways in which one can fail, its
  // neighbours by the others. MM_EVERY_FAULT: by all of them.
  const bool every = GetParam().turn == 0 || std::getenv("MM_EVERY_FAULT") != nullptr;
  int nth = every ? 1 : GetParam().turn;
  int runs = 0;
  while (Fails(nth)) {
    ASSERT_FALSE(HasFailure()) << "operation " << nth << " of its kind";
    nth += every ? kStep : 3 * kStep;
    ++runs;
  }
  std::printf("%d operations, %d runs, %ld records lost and counted\n", nth - 1, runs, lost_);
  EXPECT_GT(runs, 0);
  EXPECT_GE(files_, 2U) << "the stretch turns over to a next file";
}

INSTANTIATE_TEST_SUITE_P(Faults, FailingMediumTest, testing::ValuesIn(kFaults),
                         [](const auto& param) { return std::string(param.param.name); });

}  // namespace
