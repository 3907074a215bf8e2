// The bytes that the store writes per record at several rates, and its longest commit.
//
// Reports two minutes of records as fast as possible, into a new directory in the current one: on the real
// medium, with real syncs. Counts the bytes of write calls ("wchar" in /proc/self/io): the WAL, and the pages
// that checkpoints copy into the file.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "TurnedClock.h"
#include "store/DataStoreNormal.h"
#include "store/StoreOptions.h"

namespace {

constexpr unsigned int kTurnMs = 100;
constexpr unsigned int kSeconds = 120;

long long WrittenBytes() {
  std::ifstream file("/proc/self/io");
  std::string name;
  long long value = 0;
  while (file >> name >> value) {
    if (name == "wchar:") return value;
  }
  return 0;
}

void Measure(const std::string& directory, unsigned int recordsPerSecond) {
  using Clock = std::chrono::steady_clock;
  TurnedClock clock;
  StoreOptions options;
  options.clock = &clock;
  DataStoreNormal store(directory + "/" + std::to_string(recordsPerSecond), options);
  if (!store.Open()) return;
  store.TimerTick(clock.tick);
  const long long before = WrittenBytes();
  Clock::duration longest{};
  long long records = 0;
  for (unsigned int turn = 0; turn < kSeconds * 1000 / kTurnMs; ++turn) {
    for (unsigned int i = 0; i < recordsPerSecond * kTurnMs / 1000; ++i, ++records) {
      store.ReportTemp(e_TempSensors{i % 2}, static_cast<short>(i), true, clock.tick);
    }
    clock.tick += kTurnMs;
    const Clock::time_point begin = Clock::now();
    store.TimerTick(clock.tick);
    longest = std::max(longest, Clock::now() - begin);
  }
  store.WriteFullState(true);
  const long long bytes = WrittenBytes() - before;
  std::printf("%4u records/s: %6.1f bytes written a record, %7.0f bytes/s, longest commit %.2f ms\n",
              recordsPerSecond, static_cast<double>(bytes) / static_cast<double>(records),
              static_cast<double>(bytes) / kSeconds,
              std::chrono::duration<double, std::milli>(longest).count());
}

}  // namespace

int main() {
  std::string directory = "store-bytes-XXXXXX";
  if (mkdtemp(directory.data()) == nullptr) {
    std::perror("mkdtemp");
    return 1;
  }
  for (const unsigned int rate : {10U, 100U, 1000U}) Measure(directory, rate);
  std::filesystem::remove_all(directory);
  return 0;
}
