#include <cstdio>
#include <sstream>
#include <tuple>

#include "DiskFiles.h"
#include "FailingMedium.h"
#include "Recordings.h"
#include "support/LogCapture.h"

namespace {

constexpr int kStep = MM_FAULT_STEP;  // 1: every operation

constexpr const char* kEarlierRun = "metadata.000001.db";

// SQLite has one code for an opening that fails, whatever the reason.
constexpr Fault kFaults[] = {
    {"WriteEio", FileOp::kWrite, SQLITE_IOERR_WRITE},
    {"WriteEnospc", FileOp::kWrite, SQLITE_FULL},
    {"WriteHalf", FileOp::kWrite, SQLITE_FULL, true},
    {"SyncEio", FileOp::kSync, SQLITE_IOERR_FSYNC},
    {"SyncEnospc", FileOp::kSync, SQLITE_FULL},
    {"Open", FileOp::kOpen, SQLITE_CANTOPEN},
    {"TruncateEio", FileOp::kTruncate, SQLITE_IOERR_TRUNCATE},
    {"TruncateEnospc", FileOp::kTruncate, SQLITE_FULL},
    {"DeleteEio", FileOp::kDelete, SQLITE_IOERR_DELETE},
    {"ReadEio", FileOp::kRead, SQLITE_IOERR_READ, false, false, 5},
    {"AnyEio", FileOp::kWrite, SQLITE_IOERR, false, true, 5},
};

// Commits of all kinds, and what makes a file full.
void Work(Usage& usage) {
  for (int i = 0; i < 4; ++i) {
    usage.Temperature();
    for (int text = 0; text < 3; ++text) usage.Text(1000);
    if (i % 2 == 1) usage.Bookmark();
    if (i == 2) usage.Covert();
    usage.Turn(i == 1 ? 60 : 500);
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

// What was said of records that never could be written.
long LostAtEnd(const std::string& log) {
  const std::string said = "Lost at the end: ";
  const std::size_t at = log.find(said);
  return at == std::string::npos ? 0 : std::strtol(log.c_str() + at + said.size(), nullptr, 10);
}

class FailingMediumTest : public testing::TestWithParam<std::tuple<Fault, bool>> {
 protected:
  // Runs a stretch on a medium whose Nth operation fails; false when it has less.
  bool Fails(int nth) {
    WriteFiles(before_, "", dir_);
    FailingMedium medium(std::get<0>(GetParam()), forEver_, nth);
    const LogCapture log;
    const WatchedVfs vfs(medium);
    StoreOptions options;
    options.maxFileBytes = std::uint64_t{80} << 10;  // the third commit fills it
    options.maxPendingBytes = 8192;
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
  bool Open(Usage& usage, FailingMedium& medium) const {
    bool open = usage.Open() || usage.Open();
    if (!open) {
      EXPECT_TRUE(forEver_);
      medium.Heal();
      open = usage.Open();
    }
    EXPECT_TRUE(open);
    return open;
  }

  void Check(const Usage& usage, const std::string& log) {
    const Recordings recordings(dir_, kEarlierRun);
    EXPECT_EQ(recordings.Fault(), "");
    const long lostAtEnd = LostAtEnd(log);
    if (lostAtEnd == 0) {
      EXPECT_EQ(recordings.Holes(), 0);
    } else {
      EXPECT_TRUE(forEver_) << lostAtEnd << " records";
    }
    for (const char* table : {"temperature", "string", "bookmark", "state"}) {
      const long missing = recordings.Missing(usage.Reports(), table);
      EXPECT_GE(missing, 0) << table << ": doubled";
      EXPECT_LE(missing, recordings.Lost(table) + lostAtEnd) << table << ": gone without a word";
    }
    EXPECT_TRUE(SaidInTurn(log)) << log;
    CheckEarlierRun();
    lost_ += recordings.Lost();
    files_ = recordings.Files();
  }

  // That it was folded in, or not, without harm; a state of it that was seen before is.
  void CheckEarlierRun() {
    const std::string name = kEarlierRun;
    if (!earlierRuns_.insert(dir_.Read(name) + dir_.Read(name + "-wal")).second) return;
    EXPECT_EQ(Connection(dir_.Path(name), kPlainVfs).Rows("SELECT count(*) FROM bookmark"), "10\n");
  }

 protected:
  bool forEver_ = std::get<1>(GetParam());
  TempDir dir_;
  DiskState before_ = RunWithoutClose();
  std::set<std::string> earlierRuns_;
  long lost_ = 0;
  std::size_t files_ = 0;
};

TEST_P(FailingMediumTest, IsSurvivedWhicheverOperationItHits) {
  int nth = 1;
  for (; Fails(nth); nth += kStep * std::get<0>(GetParam()).every)
    ASSERT_FALSE(HasFailure()) << "operation " << nth << " of its kind";
  std::printf("%d operations, %ld records lost and counted\n", nth - 1, lost_);
  EXPECT_GT(nth, 1);
  if (!forEver_) {
    EXPECT_EQ(lost_, 0) << "one failure costs nothing";
  }
  EXPECT_GE(files_, 2U) << "the stretch turns over to a next file";
}

INSTANTIATE_TEST_SUITE_P(Faults, FailingMediumTest,
                         testing::Combine(testing::ValuesIn(kFaults), testing::Bool()),
                         [](const auto& param) {
                           return std::get<0>(param.param).name +
                                  std::string(std::get<1>(param.param) ? "ForEver" : "Once");
                         });

TEST(FailingReadTest, MakesTheEarlierRunUnreadableAndLeavesItAsItIs) {
  const TempDir dir;
  const DiskState before = RunWithoutClose();
  WriteFiles(before, "", dir);
  FailingMedium medium({"", FileOp::kRead, SQLITE_IOERR_READ}, false, 1);
  const LogCapture log;
  {
    const WatchedVfs vfs(medium);
    Usage usage(dir.Path("metadata"), StoreOptions());
    EXPECT_TRUE(usage.Open());
    usage.Close();
  }
  EXPECT_EQ(log.Lines("Left alone: "), 1) << log.Text();
  EXPECT_EQ(Connection(dir.Path("metadata.000002.db")).Rows("SELECT ended FROM previous_run"),
            "unreadable\n");
  for (const auto& [name, content] : before) EXPECT_EQ(dir.Read(name), content) << name;
}

}  // namespace
