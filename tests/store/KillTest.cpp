#include <sys/mman.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <random>
#include <thread>

#include "StoreFixture.h"
#include "support/Child.h"
#include "support/Eventually.h"

namespace {

constexpr int kFirstTick = 10'000;
constexpr int kTurnMs = 50;        // so each bookmark is durable when its report returns
constexpr int kTemperatures = 20;  // a turn

// The number of the last bookmark that is durable, told by the process that is to be killed.
using Durable = std::atomic<unsigned int>;

// Records without end, in files that are soon full.
int RecordUntilKilled(const std::string& path, Durable& durable) {
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
    for (short i = 0; i < kTemperatures; ++i) store.ReportTemp(e_TempSensors{0}, i, true, clock.tick);
    store.ReportBookmark(number);
    durable = number;
  }
}

class KillTest : public StoreTest, public testing::WithParamInterface<unsigned int> {
 protected:
  // The highest that the query finds in the files of the run, and the sum of what it finds.
  long Highest(const std::string& sql) const {
    return Over(sql, [](long a, long b) { return std::max(a, b); });
  }
  long Sum(const std::string& sql) const {
    return Over(sql, [](long a, long b) { return a + b; });
  }

  // Records, and is killed that long after this bookmark: the number of the last durable one.
  long RecordAndKill(unsigned int bookmark, std::chrono::microseconds after) const {
    void* shared = mmap(nullptr, sizeof(Durable), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    auto& durable = *new (shared) Durable(0);
    Child child([&] { return RecordUntilKilled(dir_.Path("metadata"), durable); });
    EXPECT_TRUE(Eventually([&] { return durable >= bookmark; }));
    std::this_thread::sleep_for(after);
    child.Signal(SIGKILL);
    EXPECT_EQ(child.Wait(), 128 + SIGKILL);
    const long last = durable;
    (void)munmap(shared, sizeof(Durable));
    return last;
  }

  int files_ = 0;

 private:
  template <typename Join>
  long Over(const std::string& sql, Join join) const {
    long all = 0;
    for (int file = 1; file <= files_; ++file)
      all = join(all, std::strtol(Rows(sql, file).c_str(), nullptr, 10));
    return all;
  }
};

TEST_P(KillTest, LeavesSoundFilesAndALedger) {
  std::mt19937 random(GetParam());
  const long durable = RecordAndKill(GetParam() % 4, std::chrono::microseconds(random() % 10'000));
  Open();  // the next run
  Store().ReportShutdownDataAtStartup();
  Close();
  while (Exists(files_ + 2)) ++files_;

  for (int file = 1; file <= files_; ++file) EXPECT_EQ(Rows("PRAGMA integrity_check", file), "ok\n");
  const long bookmarks = Highest("SELECT max(sender_tick) FROM bookmark");
  EXPECT_TRUE(bookmarks == durable || bookmarks == durable + 1) << bookmarks << " of " << durable;
  EXPECT_EQ(Sum("SELECT count(*) FROM bookmark"), bookmarks);
  EXPECT_EQ(Sum("SELECT count(*) FROM temperature WHERE event=1"), kTemperatures * bookmarks);
  EXPECT_EQ(Sum("SELECT count(*) FROM record"), Highest("SELECT max(seq) FROM record"))
      << "no gap, nothing twice";
  const long lastTick = Highest("SELECT max(tick) FROM record");
  EXPECT_GE(lastTick, durable == 0 ? 0 : kFirstTick + kTurnMs * durable);
  const std::string told =
      Rows("SELECT ended,file LIKE 'metadata.0%',last_tick FROM previous_run", files_ + 1);
  EXPECT_EQ(told, lastTick == 0 ? "none|0|0\n" : "cut off|1|" + std::to_string(lastTick) + "\n");
}

INSTANTIATE_TEST_SUITE_P(Seeds, KillTest, testing::Range(1U, 61U));

}  // namespace
