// CPU time and memory of the reader's commands on a long recording, compared with bare SELECT loops that read
// every value of the same rows.
//
//   ReadRows [ROWS]     default 1,000,000
//
// Each measurement runs in its own process, with output to /dev/null, in several turns. The kernel reports
// the peak of resident memory. Also measures memory with a tenth of the rows: it must not depend on their
// number.

#include <fcntl.h>
#include <spawn.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "Measure.h"
#include "TurnedClock.h"
#include "items/GpsStatusItem.h"
#include "store/DataStoreNormal.h"
#include "store/StoreOptions.h"

namespace {

namespace fs = std::filesystem;

constexpr int kTurns = 5;

using Words = std::vector<std::string>;

struct Cost {
  double seconds = 0;
  long kilobytes = 0;
};

// Records the most frequent kinds of a drive: ten records a second.
std::string Record(const std::string& directory, long rows) {
  fs::create_directory(directory);
  TurnedClock clock;
  StoreOptions options;
  options.clock = &clock;
  DataStoreNormal store(directory + "/metadata", options);
  if (!store.Open()) Fail("open");
  store.TimerTick(clock.tick);
  store.ReportStateData(e_Tag_RecordingStarted, true, clock.tick);
  GpsStatusItem fix;
  fix.latitudeDegrees = 42;
  fix.latitudeMinutes = 36;
  fix.latitudeHemisphere = GpsStatusItem::kNorthOrEast;
  fix.longitudeDegrees = 71;
  fix.longitudeMinutes = 3;
  fix.quality = 1;
  fix.fixDimensions = 3;
  for (long i = 0; i < rows / 10; ++i) {
    for (int k = 0; k < 4; ++k) {
      fix.latitudeMinuteFraction = static_cast<unsigned int>(i) % 10'000;
      fix.longitudeMinuteFraction = static_cast<unsigned int>(4 * i + k) % 10'000;
      store.ReportGps(fix, clock.tick, true);
      clock.tick += 250;
    }
    for (unsigned int k = 0; k < 3; ++k) store.ReportTemp(e_TempSensors{k}, 20, true, clock.tick);
    store.ReportSpeed(1, 50, true, clock.tick, e_Tag_None);
    store.ReportSpeed(2, 51, true, clock.tick, e_Tag_None);
    store.ReportStateData(i % 2 == 0 ? e_Tag_BrakesOn : e_Tag_BrakesOff, true, clock.tick);
    store.TimerTick(clock.tick);
  }
  return directory;
}

std::int64_t SelectTable(sqlite3* database, const std::string& table, bool asText) {
  sqlite3_stmt* rows = nullptr;
  const std::string sql = "SELECT * FROM " + table + " ORDER BY seq";
  if (sqlite3_prepare_v2(database, sql.c_str(), -1, &rows, nullptr) != SQLITE_OK) Fail(sql.c_str());
  std::int64_t sum = 0;
  const int columns = sqlite3_column_count(rows);
  while (sqlite3_step(rows) == SQLITE_ROW) {
    for (int i = 0; i < columns; ++i) {
      if (!asText) {
        sum += sqlite3_column_int64(rows, i);
      } else if (sqlite3_column_text(rows, i) != nullptr) {
        sum += sqlite3_column_bytes(rows, i);
      }
    }
  }
  sqlite3_finalize(rows);
  return sum;
}

// Reads every value of every row, table by table.
int SelectAll(const std::string& directory, bool asText) {
  std::int64_t sum = 0;
  for (const auto& entry : fs::directory_iterator(directory)) {
    sqlite3* database = nullptr;
    if (sqlite3_open_v2(entry.path().c_str(), &database, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK)
      Fail("open");
    for (const char* table : {"gps", "temperature", "speed", "state"}) {
      sum += SelectTable(database, table, asText);
    }
    sqlite3_close(database);
  }
  return sum == 0 ? 1 : 0;
}

Cost Run(Words words) {
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t child = 0;
  int status = 0;
  rusage used{};
  if (posix_spawn(&child, arguments[0], &actions, nullptr, arguments.data(), environ) != 0 ||
      wait4(child, &status, 0, &used) != child || status != 0) {
    Fail(words[0].c_str());
  }
  posix_spawn_file_actions_destroy(&actions);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
  };
  return {seconds(used.ru_utime) + seconds(used.ru_stime), used.ru_maxrss};
}

struct Case {
  const char* name;
  Words words;
  std::vector<double> seconds;
  long kilobytes = 0;
  long kilobytesOfTenth = 0;
};

void Measure(const std::string& directory, long rows) {
  const std::string self = fs::read_symlink("/proc/self/exe");
  const std::string reader = METADATA_PROGRAM;
  std::vector<Case> cases = {
      {"SELECT loop, numbers", {self, "--numbers"}, {}},
      {"SELECT loop, texts", {self, "--texts"}, {}},
      {"dump, CSV", {reader, "dump", "--format", "csv"}, {}},
      {"dump, JSON lines", {reader, "dump", "--format", "jsonl"}, {}},
      {"dump, text", {reader, "dump"}, {}},
      {"export, CSV", {reader, "export", "--format", "csv"}, {}},
      {"export, GPX", {reader, "export", "--format", "gpx"}, {}},
      {"export, GeoJSON", {reader, "export", "--format", "geojson"}, {}},
      {"export, SubRip", {reader, "export", "--format", "srt"}, {}},
  };
  const std::string all = Record(directory + "/all", rows);
  const std::string tenth = Record(directory + "/tenth", rows / 10);
  for (int turn = 0; turn < kTurns; ++turn) {
    for (Case& c : cases) {
      c.words.push_back(all);
      const Cost cost = Run(c.words);
      c.seconds.push_back(cost.seconds);
      c.kilobytes = std::max(c.kilobytes, cost.kilobytes);
      c.words.back() = tenth;
      if (turn == 0) c.kilobytesOfTenth = Run(c.words).kilobytes;
      c.words.pop_back();
    }
  }
  std::printf("%ld rows; CPU, times the loops, peak of resident memory (of a tenth of the rows)\n", rows);
  const double numbers = Median(cases[0].seconds);
  const double texts = Median(cases[1].seconds);
  for (Case& c : cases) {
    std::printf("%-22s %6.2f s %6.2f %6.2f %8ld kB (%ld kB)\n", c.name, Median(c.seconds),
                Median(c.seconds) / numbers, Median(c.seconds) / texts, c.kilobytes, c.kilobytesOfTenth);
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::string first = argc > 1 ? argv[1] : "1000000";
  if (argc > 2 && first.starts_with("--")) return SelectAll(argv[2], first == "--texts");
  const long rows = std::strtol(first.c_str(), nullptr, 10);
  std::string directory = "read-rows-XXXXXX";
  if (rows < 100 || mkdtemp(directory.data()) == nullptr) {
    std::fprintf(stderr, "usage: ReadRows [ROWS]\n");
    return 1;
  }
  Measure(fs::absolute(directory), rows);
  fs::remove_all(directory);
  return 0;
}
