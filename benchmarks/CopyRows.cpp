// Time and memory for copying a long recording, compared with bare INSERT ... SELECT statements (the floor)
// that copy the same rows between the same files.
//
//   CopyRows [ROWS]     default 10,000,000
//
// Measures elapsed times alternately, on the medium of the current directory, each including a final sync.
// The floor runs in its own process, so that this process's peak memory ("VmHWM") is that of recording and
// copying.

#include <fcntl.h>
#include <spawn.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "Measure.h"
#include "TurnedClock.h"
#include "store/DataStoreNormal.h"
#include "store/MetadataReader.h"
#include "store/StoreOptions.h"

namespace {

namespace fs = std::filesystem;

constexpr int kTurns = 3;

template <typename Work>
double SecondsOf(Work work) {
  const auto begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

std::vector<std::string> RecordingsIn(const std::string& directory) {
  std::vector<std::string> paths;
  for (const auto& entry : fs::directory_iterator(directory)) {
    if (entry.path().extension() == ".db") paths.push_back(entry.path());
  }
  std::sort(paths.begin(), paths.end());
  return paths;
}

// Uses the settings of a copy, so that the comparison shows all other costs.
int CopyBare(const std::string& destination, const std::vector<std::string>& sources) {
  sqlite3* database = nullptr;
  const auto run = [&database](const std::string& sql) {
    if (sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) Fail(sql.c_str());
  };
  if (sqlite3_open(destination.c_str(), &database) != SQLITE_OK) Fail("open");
  run("PRAGMA page_size=4096; PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF; PRAGMA cache_size=-2000;"
      "CREATE TABLE temperature(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, "
      "event INTEGER NOT NULL, sensor INTEGER NOT NULL, temperature INTEGER NOT NULL) STRICT");
  for (const std::string& source : sources) {
    run("ATTACH '" + source + "' AS source");
    run("INSERT INTO main.temperature SELECT * FROM source.temperature");
    run("DETACH source");
  }
  sqlite3_close(database);
  const int fd = open(destination.c_str(), O_RDONLY);
  if (fd < 0 || fsync(fd) != 0) Fail("sync");
  return 0;
}

void RunFloor(const std::string& destination, const std::string& directory) {
  std::vector<std::string> words = {"CopyRows", "--floor", destination};
  for (const std::string& path : RecordingsIn(directory)) words.push_back(path);
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  pid_t child = 0;
  int status = 0;
  if (posix_spawn(&child, "/proc/self/exe", nullptr, nullptr, arguments.data(), environ) != 0 ||
      waitpid(child, &status, 0) != child || status != 0) {
    Fail("the floor");
  }
}

void Record(DataStoreNormal& store, TurnedClock& clock, long rows) {
  for (long i = 0; i < rows; ++i) {
    store.ReportTemp(e_TempSensors{static_cast<unsigned int>(i) % 2}, static_cast<short>(i % 1000), true,
                     clock.tick);
    if (i % 100 == 0) store.TimerTick(++clock.tick);
  }
  store.WriteFullState(true);
}

void Copy(const std::string& recordings, const std::string& destination, unsigned int first) {
  if (!MetadataReader().ReadToNewFile(recordings + "/metadata", destination, first, 0xFFFFFFFFU, nullptr)) {
    Fail("copy");
  }
}

long PeakKilobytes() {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    long value = 0;
    if (word == "VmHWM:" && status >> value) return value;
  }
  return 0;
}

void Measure(const std::string& directory, long rows) {
  const std::string recordings = directory + "/recordings";
  const std::string copy = directory + "/copy.db";
  fs::create_directory(recordings);
  TurnedClock clock;
  StoreOptions options;
  options.clock = &clock;
  DataStoreNormal store(recordings + "/metadata", options);
  if (!store.Open()) Fail("open");
  store.TimerTick(clock.tick);
  Record(store, clock, rows);
  std::vector<double> ours;
  std::vector<double> floor;
  for (int turn = 0; turn < kTurns; ++turn) {
    floor.push_back(SecondsOf([&] { RunFloor(copy, recordings); }));
    fs::remove(copy);
    ours.push_back(SecondsOf([&] {
      if (!MetadataReader().ReadToNewFile(recordings + "/metadata", copy, 0, 0xFFFFFFFFU, nullptr))
        Fail("copy");
    }));
    if (turn + 1 == kTurns) break;
    fs::remove(copy);
  }
  std::printf("%ld rows in %zu files, copy of %ju bytes\n", rows, RecordingsIn(recordings).size(),
              static_cast<std::uintmax_t>(fs::file_size(copy)));
  std::printf("floor %.2f s, ours %.2f s: %.2f times its floor\n", Median(floor), Median(ours),
              Median(ours) / Median(floor));
  fs::remove(copy);
  const double end = SecondsOf([&] { Copy(recordings, copy, clock.tick - 1000); });
  std::printf("the last second of ticks alone: %.2f s, %ju bytes\n", end,
              static_cast<std::uintmax_t>(fs::file_size(copy)));
  std::printf("peak of resident memory: %ld kB\n", PeakKilobytes());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc > 2 && std::string(argv[1]) == "--floor") {
    return CopyBare(fs::absolute(argv[2]), {argv + 3, argv + argc});
  }
  const long rows = argc > 1 ? std::strtol(argv[1], nullptr, 10) : 10'000'000;
  std::string directory = "copy-rows-XXXXXX";
  if (rows <= 0 || mkdtemp(directory.data()) == nullptr) {
    std::fprintf(stderr, "usage: CopyRows [ROWS]\n");
    return 1;
  }
  Measure(fs::absolute(directory), rows);
  fs::remove_all(directory);
  return 0;
}
