// Gives tampered recordings to the reader: a short real one, first changed with SQL, then in its bytes. The
// reader must report what it finds; it may neither crash nor run for ever.

#include <sqlite3.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string>
#include <vector>

#include "Commands.h"
#include "Input.h"
#include "log/LogClient.h"
#include "store/DataStoreNormal.h"
#include "store/StoreOptions.h"
#include "support/TempDir.h"

namespace {

class SteppedClock : public StoreClock {
 public:
  unsigned int TickMs() const override { return tick; }
  std::int64_t UtcMs() const override { return 1714564800000 + tick; }

  unsigned int tick = 10'000;
};

// `closed` is a recording after a clean end; `open` one in the middle of a run, with its WAL in `wal`.
// `loose` is closed, and its tables take values of any type.
struct Originals {
  std::string closed, loose, open, wal;
};

void Record(DataStoreNormal& store, SteppedClock& clock) {
  const auto after = [&](unsigned int ms) { store.TimerTick(clock.tick += ms); };
  after(0);
  store.ReportShutdownDataAtStartup();
  store.ReportConfiguration(false);
  for (short i = 0; i < 4; ++i) {
    store.ReportStateData(i % 2 == 0 ? e_Tag_RecordingStarted : e_Tag_RecordingStopped, true, clock.tick);
    store.ReportTemp(e_TempSensors{0}, i, true, clock.tick);
    store.ReportSpeed(1, 50, true, clock.tick - 20, e_Tag_None);
    store.ReportBookmark(clock.tick);
    after(600);
  }
  store.ReportStringData(e_Tag_Filler, "a \"text\"");
}

// A recording loaded into memory, to be changed there.
class Tampered {
 public:
  explicit Tampered(const std::string& file) {
    Require(sqlite3_open(":memory:", &database_) == SQLITE_OK);
    auto* bytes = static_cast<unsigned char*>(sqlite3_malloc64(file.size()));
    std::copy(file.begin(), file.end(), bytes);
    const auto size = static_cast<sqlite3_int64>(file.size());
    Require(sqlite3_deserialize(database_, "main", bytes, size, size,
                                SQLITE_DESERIALIZE_FREEONCLOSE | SQLITE_DESERIALIZE_RESIZEABLE) == SQLITE_OK);
    (void)sqlite3_exec(database_, "PRAGMA writable_schema=ON", nullptr, nullptr, nullptr);
    sqlite3_set_authorizer(database_, Allows, nullptr);
    sqlite3_progress_handler(
        database_, 10000, [](void*) { return 1; }, nullptr);
    sqlite3_limit(database_, SQLITE_LIMIT_LENGTH, 100'000);
  }
  ~Tampered() { sqlite3_close(database_); }
  Tampered(const Tampered&) = delete;
  Tampered& operator=(const Tampered&) = delete;

  void Execute(const std::string& sql) {
    (void)sqlite3_exec(database_, sql.c_str(), nullptr, nullptr, nullptr);
  }

  // Puts a value into a cell.
  void Set(Input& input) {
    const std::string table = NameOf("sqlite_master WHERE type='table'", input.Byte());
    const std::string column = NameOf("pragma_table_info('" + table + "')", input.Byte());
    sqlite3_stmt* update = nullptr;
    const std::string sql = "UPDATE \"" + table + "\" SET \"" + column +
                            "\"=?1 WHERE rowid IN (SELECT rowid FROM \"" + table + "\" LIMIT 1 OFFSET " +
                            std::to_string(input.Below(8)) + ")";
    if (sqlite3_prepare_v2(database_, sql.c_str(), -1, &update, nullptr) != SQLITE_OK) return;
    Bind(update, input);
    (void)sqlite3_step(update);
    (void)sqlite3_finalize(update);
  }

  std::string File() {
    sqlite3_int64 size = 0;
    unsigned char* bytes = sqlite3_serialize(database_, "main", &size, 0);
    std::string file(reinterpret_cast<char*>(bytes), bytes == nullptr ? 0 : static_cast<std::size_t>(size));
    sqlite3_free(bytes);
    return file;
  }

 private:
  static int Allows(void* /*context*/, int action, const char* what, const char*, const char*, const char*) {
    const bool strange = action == SQLITE_PRAGMA && std::string_view(what).starts_with("temp_store");
    return action == SQLITE_ATTACH || strange ? SQLITE_DENY : SQLITE_OK;
  }

  std::string NameOf(const std::string& source, unsigned int number) {
    std::string name;
    const std::string sql = "SELECT name FROM " + source + " LIMIT 1 OFFSET " + std::to_string(number % 40);
    (void)sqlite3_exec(
        database_, sql.c_str(),
        [](void* text, int, char** values, char**) {
          if (values[0] != nullptr) *static_cast<std::string*>(text) = values[0];
          return 0;
        },
        &name, nullptr);
    return name;
  }

  static void Bind(sqlite3_stmt* statement, Input& input) {
    switch (input.Below(5)) {
      case 0: {
        const auto high = static_cast<std::uint64_t>(input.Word());
        (void)sqlite3_bind_int64(statement, 1, static_cast<sqlite3_int64>(high << 32 | input.Word()));
        break;
      }
      case 1:
        (void)sqlite3_bind_int64(statement, 1, static_cast<signed char>(input.Byte()));
        break;
      case 2:
        (void)sqlite3_bind_double(statement, 1, static_cast<double>(input.Word()) / 3);
        break;
      case 3: {
        const std::string text = input.Line();
        (void)sqlite3_bind_text(statement, 1, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
        break;
      }
      default:
        break;  // NULL
    }
  }

  sqlite3* database_ = nullptr;
};

Originals MakeOriginals() {
  const TempDir directory;
  SteppedClock clock;
  StoreOptions options;
  options.clock = &clock;
  const std::string name = "metadata.000001.db";
  Originals made;
  DataStoreNormal store(directory.Path("metadata"), options);
  Require(store.Open());
  Record(store, clock);
  store.WriteFullState(true);
  made.open = directory.Read(name);
  made.wal = directory.Read(name + "-wal");
  store.ReportShutdownData();
  store.Close();
  made.closed = directory.Read(name);
  Tampered tampered(made.closed);
  tampered.Execute("UPDATE sqlite_master SET sql=replace(sql, ' STRICT', '')");
  made.loose = tampered.File();
  Require(!made.loose.empty() && made.loose != made.closed && !made.wal.empty());
  return made;
}

void Damage(std::string& file, Input& input) {
  if (file.empty()) return;
  const std::size_t at = (input.Word() >> 8) % file.size();
  if (input.Below(8) == 0) {
    file.resize(at);
  } else {
    const std::string bytes = input.Take(1 + input.Below(16));
    file.replace(at, std::min(bytes.size(), file.size() - at), bytes);
  }
}

int Run(const std::string& name, std::vector<std::string> arguments) {
  const auto commands = reader::Commands();
  const auto command = std::find_if(commands.begin(), commands.end(),
                                    [&name](const reader::Command& row) { return row.name == name; });
  CLI::App app;
  const reader::Action action = command->declare(app);
  std::reverse(arguments.begin(), arguments.end());
  app.parse(arguments);
  return action();
}

void Read(const std::string& path, std::size_t how) {
  const std::vector<std::string> kWays[] = {
      {"info"},
      {"check"},
      {"state", "--at", "bookmark:2+100ms"},
      {"dump", "--format", "text"},
      {"dump", "--format", "csv"},
      {"dump", "--format", "jsonl"},
      {"dump", "--from", "record-start-1s", "--to", "2024-05-01T12:00:11Z", "--source", "speed,gps"},
  };
  std::vector<std::string> words = kWays[how % std::size(kWays)];
  const std::string command = words[0];
  words[0] = path;
  (void)Run(command, words);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool quiet = (LogClient::Instance().Level(0), true);
  static const Originals originals = MakeOriginals();
  static const TempDir directory;
  (void)quiet;
  Input input(data, size);
  const std::size_t how = input.Byte();
  const std::size_t which = input.Below(4);
  const bool withWal = which == 1;
  std::string file = withWal ? originals.open : which == 3 ? originals.loose : originals.closed;
  std::string wal = withWal ? originals.wal : "";
  if (!withWal) {
    Tampered tampered(file);
    for (std::size_t what = input.Below(3); what != 2 && !input.Done(); what = input.Below(3)) {
      if (what == 0) tampered.Execute(input.Line());
      if (what == 1) tampered.Set(input);
    }
    file = tampered.File();
  }
  while (!input.Done()) Damage(input.Below(2) == 0 || wal.empty() ? file : wal, input);
  const std::string path = directory.Write("metadata.000001.db", file);
  if (wal.empty()) {
    std::filesystem::remove(path + "-wal");
  } else {
    (void)directory.Write("metadata.000001.db-wal", wal);
  }
  Read(path, how);
  return 0;
}
