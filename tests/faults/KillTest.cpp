#include <algorithm>
#include <csignal>
#include <filesystem>
#include <random>
#include <thread>

#include "Usage.h"
#include "support/Child.h"
#include "support/Eventually.h"

namespace {

constexpr int kKills = 60 / (MM_FAULT_STEP > 5 ? 4 : 1);

// Records until it is killed. The key of the seals moves often.
int RecordForEver(const std::string& basePath, const StoreOptions& options) {
  Usage usage(basePath, options);
  if (!usage.Open()) return 1;
  for (unsigned int i = 1;; ++i) {
    usage.Temperature();
    if (i % 4 == 1) usage.Bookmark();
    if (i % 3 == 0) usage.Text(1000);
    usage.Turn(i % 9 == 0 ? 600'000 : 250);
  }
}

std::ptrdiff_t Files(const TempDir& dir) {
  const std::filesystem::directory_iterator entries(dir.Path(""));
  return std::count_if(begin(entries), end(entries),
                       [](const auto& entry) { return entry.path().extension() == ".db"; });
}

TEST(KillTest, NoKillMakesARecordingLookAltered) {
  const TempDir dir;
  const Sealed sealed;
  StoreOptions options;
  options.maxFileBytes = std::uint64_t{96} << 10;
  options.keyFile = sealed.KeyFile();
  std::mt19937 random(1);
  for (int kill = 1; kill <= kKills; ++kill) {
    const std::ptrdiff_t before = Files(dir);
    Child child([&] { return RecordForEver(dir.Path("metadata"), options); });
    // Every other kill comes after the run has begun its file.
    if (kill % 2 == 0) {
      ASSERT_TRUE(Eventually([&] { return Files(dir) > before; }));
    }
    std::this_thread::sleep_for(std::chrono::microseconds(2'000 + random() % 40'000));
    ASSERT_FALSE(child.Ended());
    child.Signal(SIGKILL);
    ASSERT_EQ(child.Wait(), 128 + SIGKILL);
    if (kill % 10 == 0 || kill == kKills) {
      ASSERT_EQ(sealed.Unproven(dir.Path("")), "") << "kill " << kill;
    }
  }
}

}  // namespace
