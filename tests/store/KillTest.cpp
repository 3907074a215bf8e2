#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <limits>
#include <random>
#include <thread>

#include "StoreFixture.h"
#include "support/Child.h"

namespace {

constexpr unsigned int kFirstTick = 10'000;
constexpr unsigned int kTurnMs = 50;  // so each bookmark is durable when its report returns

class Pipe {
 public:
  Pipe() {
    if (pipe(ends_.data()) != 0) std::abort();
  }
  ~Pipe() {
    CloseWriter();
    close(ends_[0]);
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  int Writer() const { return ends_[1]; }
  void CloseWriter() {
    if (ends_[1] >= 0) close(ends_[1]);
    ends_[1] = -1;
  }
  // The last number up to this one that was written; 0 for none.
  unsigned int Last(unsigned int upTo) {
    unsigned int number = 0;
    while (last_ < upTo && read(ends_[0], &number, sizeof number) == static_cast<ssize_t>(sizeof number)) {
      last_ = number;
    }
    return last_;
  }

 private:
  std::array<int, 2> ends_{};
  unsigned int last_ = 0;
};

// Records without end, in files that are soon full. The number of a bookmark goes into the pipe as soon
// as it is durable.
int RecordUntilKilled(const std::string& path, int writer) {
  FakeClock clock;
  clock.tick = kFirstTick;
  StoreOptions options;
  options.clock = &clock;
  options.maxFileBytes = 1;
  DataStoreNormal store(path, options);
  if (!store.Open()) return 1;
  for (unsigned int number = 1;; ++number) {
    clock.tick += kTurnMs;
    clock.utcMs += kTurnMs;
    store.TimerTick(clock.tick);
    for (short i = 0; i < 20; ++i) store.ReportTemp(e_TempSensors{0}, i, true, clock.tick);
    store.ReportBookmark(number);
    if (write(writer, &number, sizeof number) != static_cast<ssize_t>(sizeof number)) return 1;
  }
}

class KillTest : public StoreTest {
 protected:
  // The last bookmark that the child was told is durable; it is killed some time after that one.
  unsigned int RecordAndKill(unsigned int bookmark, std::chrono::microseconds after) {
    Pipe pipe;
    const std::string path = dir_.Path("metadata");
    Child child([&] { return RecordUntilKilled(path, pipe.Writer()); });
    pipe.CloseWriter();
    EXPECT_EQ(pipe.Last(bookmark), bookmark);
    std::this_thread::sleep_for(after);
    child.Signal(SIGKILL);
    EXPECT_EQ(child.Wait(), 128 + SIGKILL);
    return pipe.Last(std::numeric_limits<unsigned int>::max());
  }

  // The run after it, which says in its file how the one before ended.
  std::string Ledger() {
    Open();
    Store().ReportShutdownDataAtStartup();
    Close();
    files_ = 0;
    while (Exists(files_ + 1)) ++files_;
    return Rows("SELECT ended,file,last_tick FROM previous_run", files_);
  }

  long long SumOverTheRun(const std::string& sql) const {
    long long sum = 0;
    for (int file = 1; file < files_; ++file) sum += std::strtoll(Rows(sql, file).c_str(), nullptr, 10);
    return sum;
  }
  long long HighestOfTheRun(const std::string& sql) const {
    long long highest = 0;
    for (int file = 1; file < files_; ++file)
      highest = std::max(highest, std::strtoll(Rows(sql, file).c_str(), nullptr, 10));
    return highest;
  }

  void ExpectNothingToldDurableIsGone(unsigned int durable) {
    const std::string ledger = Ledger();
    for (int file = 1; file < files_; ++file) EXPECT_EQ(Rows("PRAGMA integrity_check", file), "ok\n");
    const long long bookmarks = HighestOfTheRun("SELECT max(sender_tick) FROM bookmark");
    EXPECT_GE(bookmarks, durable);
    EXPECT_LE(bookmarks, durable + 1);
    EXPECT_EQ(SumOverTheRun("SELECT count(*) FROM bookmark"), bookmarks);
    EXPECT_EQ(SumOverTheRun("SELECT count(*) FROM temperature WHERE event=1"), 20 * bookmarks);
    EXPECT_EQ(SumOverTheRun("SELECT count(*) FROM record"), HighestOfTheRun("SELECT max(seq) FROM record"))
        << "no gap, nothing twice";
    const long long lastTick = HighestOfTheRun("SELECT max(tick) FROM record");
    if (lastTick == 0) {
      EXPECT_EQ(ledger, "none||0\n") << "killed before anything was recorded";
    } else {
      EXPECT_TRUE(ledger.starts_with("cut off|metadata.0")) << ledger;
      EXPECT_TRUE(ledger.ends_with("|" + std::to_string(lastTick) + "\n")) << ledger << lastTick;
    }
    EXPECT_GE(lastTick, durable == 0 ? 0 : kFirstTick + kTurnMs * durable);
  }

 private:
  int files_ = 0;
};

class RandomKillTest : public KillTest, public testing::WithParamInterface<unsigned int> {};

TEST_P(RandomKillTest, LeavesSoundFilesAndALedger) {
  std::mt19937 random(GetParam());
  const unsigned int bookmark = GetParam() % 4;
  const std::chrono::microseconds after(random() % 10'000);
  ExpectNothingToldDurableIsGone(RecordAndKill(bookmark, after));
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomKillTest, testing::Range(1U, 61U));

}  // namespace
