#include <cstdio>
#include <fstream>
#include <tuple>

#include "DiskFiles.h"
#include "Recordings.h"
#include "support/LogCapture.h"
#include "support/Sealed.h"

namespace {

constexpr int kStep = MM_FAULT_STEP;  // 1: every operation

constexpr int kVerifyEvery = 50;

constexpr const char* kEarlierRun = "metadata.000001.db";

// A fault of the medium.
struct Fault {
  const char* name;
  FileOp op;
  int code;            // SQLite's error code
  bool half = false;   // half of the data is still written
  bool anyOp = false;  // any operation, not only `op`
  int every = 1;       // tries every Nth operation only
};

// SQLite has one error code for every failed open.
constexpr Fault kFaults[] = {
    {"WriteEio", FileOp::kWrite, SQLITE_IOERR_WRITE},
    {"WriteHalf", FileOp::kWrite, SQLITE_FULL, true},
    {"SyncEio", FileOp::kSync, SQLITE_IOERR_FSYNC},
    {"Open", FileOp::kOpen, SQLITE_CANTOPEN},
    {"TruncateEio", FileOp::kTruncate, SQLITE_IOERR_TRUNCATE},
    {"DeleteEio", FileOp::kDelete, SQLITE_IOERR_DELETE},
    {"ReadEio", FileOp::kRead, SQLITE_IOERR_READ, false, false, 5},
    {"AnyEio", FileOp::kWrite, SQLITE_IOERR, false, true, 5},
};

// A medium on which the Nth operation of a kind fails; with `forEver` all later ones fail too.
class FailingMedium : public FileWatch {
 public:
  // `nth` counts from 1.
  FailingMedium(const Fault& fault, bool forEver, int nth) : fault_(fault), forEver_(forEver), nth_(nth) {}

  Verdict Before(const FileEvent& event) override {
    if (!fault_.anyOp && event.op != fault_.op) return {};
    ++count_;
    if (healed_ || (forEver_ ? count_ < nth_ : count_ != nth_)) return {};
    return {fault_.code, fault_.half ? event.data.size() / 2 : 0};
  }
  // Ends the fault when it has begun or is permanent.
  void Heal() { healed_ = forEver_ || Failed(); }

  bool Failed() const { return count_ >= nth_; }

 private:
  Fault fault_;
  bool forEver_;
  int nth_;
  int count_ = 0;
  bool healed_ = false;
};

// Makes commits of all kinds, and fills a file.
void Work(Usage& usage) {
  for (int i = 0; i < 4; ++i) {
    usage.Temperature();
    for (int text = 0; text < 3; ++text) usage.Text(1000);
    if (i % 2 == 1) usage.Bookmark();
    if (i == 2) usage.Covert();
    usage.Turn(i == 1 ? 60 : 500);
  }
}

class FailingMediumTest : public testing::TestWithParam<std::tuple<Fault, bool>> {
 protected:
  // Records on a medium whose Nth operation fails. Returns false when there are fewer operations.
  bool Fails(int nth) {
    WriteFiles(before_, "", dir_);
    std::ofstream(sealed_.KeyFile(), std::ios::binary) << key_;
    FailingMedium medium(std::get<0>(GetParam()), forEver_, nth);
    const LogCapture log;
    const WatchedVfs vfs(medium);
    StoreOptions options;
    options.maxFileBytes = std::uint64_t{80} << 10;  // the third commit fills the file
    options.maxPendingBytes = 8192;
    options.keyFile = sealed_.KeyFile();
    Usage usage(dir_.Path("metadata"), options);
    if (!Open(usage, medium)) return true;
    Work(usage);
    medium.Heal();
    usage.Turn(600);
    usage.Bookmark();
    usage.Turn(600);
    usage.Close();
    EXPECT_EQ(log.Lines("Recording to "), log.Lines(" works again")) << log.Text();
    EXPECT_EQ(log.Lines("Lost at the end: "), 0);
    Check(usage);
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

  void Check(const Usage& usage) {
    const Recordings recordings(dir_, kEarlierRun);
    EXPECT_EQ(recordings.Holes(), 0);
    for (const char* table : {"temperature", "string", "bookmark", "state"}) {
      const long missing = recordings.Missing(usage, table);
      EXPECT_GE(missing, 0) << table << ": doubled";
      EXPECT_LE(missing, recordings.Lost(table)) << table << ": gone without a word";
    }
    CheckEarlierRun();
    // Verifying takes much longer than the run.
    if (++checked_ % kVerifyEvery == 0) {
      EXPECT_EQ(sealed_.Altered(dir_.Path("")), "");
    }
    lost_ += recordings.Lost();
    files_ = recordings.Files();
  }

  // Checks that the earlier run lost nothing, with or without a checkpoint. Skips states already checked.
  void CheckEarlierRun() {
    const std::string name = kEarlierRun;
    if (!earlierRuns_.insert(dir_.Read(name) + dir_.Read(name + "-wal")).second) return;
    EXPECT_EQ(Connection(dir_.Path(name), kPlainVfs).Rows("SELECT count(*) FROM bookmark"), "10\n");
  }

 protected:
  bool forEver_ = std::get<1>(GetParam());
  TempDir dir_;
  Sealed sealed_;
  DiskState before_ = RunWithoutClose(sealed_.KeyFile());
  std::string key_ = TextOfFile(sealed_.KeyFile());
  int checked_ = 0;
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

TEST_P(FailingMediumTest, NeverChangesADamagedWal) {
  const std::string wal = std::string(kEarlierRun) + "-wal";
  before_[wal][before_[wal].size() / 2] ^= 1;
  for (int nth = 1; nth < 40; nth += 3 * kStep) {
    WriteFiles(before_, "", dir_);
    FailingMedium medium(std::get<0>(GetParam()), forEver_, nth);
    const LogCapture captured;
    const WatchedVfs vfs(medium);
    Usage usage(dir_.Path("metadata"));
    (void)usage.Open();
    usage.Close();
    ASSERT_TRUE(dir_.Read(kEarlierRun) == before_[kEarlierRun] && dir_.Read(wal) == before_[wal]) << nth;
  }
}

INSTANTIATE_TEST_SUITE_P(Faults, FailingMediumTest,
                         testing::Combine(testing::ValuesIn(kFaults), testing::Bool()),
                         [](const auto& param) {
                           return std::get<0>(param.param).name +
                                  std::string(std::get<1>(param.param) ? "ForEver" : "Once");
                         });

}  // namespace
