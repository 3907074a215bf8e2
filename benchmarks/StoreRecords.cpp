// The cost of a record from its report through batch and commit, compared with bare prepared inserts of the
// same rows into a similar table, in transactions of the same size.
//
// Measures the CPU time of the thread. Both write to memory (/dev/shm), where a sync costs nothing.

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <string>

#include "Measure.h"
#include "Ratio.h"
#include "TurnedClock.h"
#include "seal/KeyFile.h"
#include "seal/KeyPlace.h"
#include "store/DataStoreNormal.h"
#include "store/StoreOptions.h"

namespace {

constexpr int kTransactions = 1000;
constexpr unsigned int kCommitAfterMs = 500;

// The file does not exist: seals without signatures.
void NoKey(const std::string& /*path*/) {}

void NewKey(const std::string& path) {
  seal::KeyFile file;
  if (file.Create(path, seal::Hardware(), seal::KeyTree(seal::Seed{7})) != seal::KeyFile::Outcome::kOk)
    Fail("key");
}

template <auto kPutKey>
void Ours(benchmark::State& state) {
  const Scratch scratch;
  TurnedClock clock;
  StoreOptions options;
  options.keyFile = scratch.Path("key");
  kPutKey(options.keyFile);
  options.clock = &clock;
  DataStoreNormal store(scratch.Path("metadata"), options);
  if (!store.Open()) Fail("open");
  store.TimerTick(clock.tick);
  for (auto _ : state) {
    const double begin = ThreadSeconds();
    for (int i = 0; i < state.range(0); ++i) {
      store.ReportTemp(e_TempSensors{0}, static_cast<short>(i), true, clock.tick);
    }
    clock.tick += kCommitAfterMs;
    store.TimerTick(clock.tick);
    state.SetIterationTime(ThreadSeconds() - begin);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void Floor(benchmark::State& state) {
  const Scratch scratch;
  sqlite3* database = nullptr;
  sqlite3_stmt* insert = nullptr;
  const auto run = [&database](const char* sql) {
    if (sqlite3_exec(database, sql, nullptr, nullptr, nullptr) != SQLITE_OK) Fail(sql);
  };
  if (sqlite3_open(scratch.Path("floor.db").c_str(), &database) != SQLITE_OK) Fail("open");
  run("PRAGMA page_size=1024; PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL; PRAGMA cache_size=-512;"
      "CREATE TABLE temperature(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, "
      "event INTEGER NOT NULL, sensor INTEGER NOT NULL, temperature INTEGER NOT NULL) STRICT");
  if (sqlite3_prepare_v2(database, "INSERT INTO temperature VALUES(?,?,?,?,?,?)", -1, &insert, nullptr) !=
      SQLITE_OK) {
    Fail("prepare");
  }
  std::int64_t seq = 0;
  std::int64_t tick = 1000;
  for (auto _ : state) {
    const double begin = ThreadSeconds();
    run("BEGIN IMMEDIATE");
    for (int i = 0; i < state.range(0); ++i) {
      const std::int64_t row[] = {++seq, tick, tick, 1, 0, i};
      for (int column = 0; column < 6; ++column) sqlite3_bind_int64(insert, column + 1, row[column]);
      if (sqlite3_step(insert) != SQLITE_DONE) Fail("insert");
      sqlite3_reset(insert);
    }
    run("COMMIT");
    tick += kCommitAfterMs;
    state.SetIterationTime(ThreadSeconds() - begin);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
  sqlite3_finalize(insert);
  sqlite3_close(database);
}

void Repeated(benchmark::internal::Benchmark* benchmark) {
  benchmark->UseManualTime()
      ->Iterations(kTransactions)
      ->Repetitions(5)
      ->ReportAggregatesOnly()
      ->Unit(benchmark::kMicrosecond);
}

// Transactions of half a second, at 100 and at 1,000 records a second.
BENCHMARK(Floor)->Name("Store50Records/floor")->Arg(50)->Apply(Repeated);
BENCHMARK(Ours<NoKey>)->Name("Store50Records/ours")->Arg(50)->Apply(Repeated);
BENCHMARK(Floor)->Name("Store500Records/floor")->Arg(500)->Apply(Repeated);
BENCHMARK(Ours<NoKey>)->Name("Store500Records/ours")->Arg(500)->Apply(Repeated);

// The same without a key and with one.
BENCHMARK(Ours<NoKey>)->Name("Sign5Records/floor")->Arg(5)->Apply(Repeated);
BENCHMARK(Ours<NewKey>)->Name("Sign5Records/ours")->Arg(5)->Apply(Repeated);
BENCHMARK(Ours<NoKey>)->Name("Sign500Records/floor")->Arg(500)->Apply(Repeated);
BENCHMARK(Ours<NewKey>)->Name("Sign500Records/ours")->Arg(500)->Apply(Repeated);

}  // namespace

int main(int argc, char** argv) {
  return RunWithRatios(argc, argv);
}
