#include <CLI/CLI.hpp>
#include <map>

#include "Declarations.h"
#include "Encode.h"
#include "Freshness.h"
#include "Instant.h"
#include "Output.h"
#include "Print.h"
#include "RangeOptions.h"
#include "RowText.h"
#include "RunJson.h"
#include "RunReader.h"
#include "Utc.h"

namespace reader {
namespace {

struct StateOptions {
  Recordings recordings;
  std::optional<Instant> at;
  bool json = false;
};

// The last value of a source.
struct Value {
  std::string text;
  std::int64_t ageMs = 0;
  bool older = false;  // known only from a restated record: at least this old
  bool isPeriodic = false;
  Freshness freshness;
};

// The values at an instant. Between two runs, the values at the end of the earlier run.
class Snapshot {
 public:
  explicit Snapshot(const Position& at) : at_(at) {}

  // Returns false when later rows cannot matter.
  bool Take(const Row& row) {
    const std::int64_t ageMs = at_.AgeMs(row);
    const bool behind = at_.Compare(row) > 0;
    if (row.run != run_) {
      if (behind || behind_) return EnterNext(row, ageMs);
      *this = Snapshot(at_);
      run_ = row.run;
    }
    if (behind) {
      behind_ = true;
      return ageMs > -kDisorderMs && at_.by != Position::By::kSeq;
    }
    lastAgeMs_ = ageMs;
    if (row.table == "configuration") return true;
    if (UtcOfInstant(row)) utcMs_ = row.utcMs + ageMs;
    SetValue(row, ageMs);
    return true;
  }

  bool Empty() const { return values_.empty(); }
  // Whether anything is recorded after the instant.
  bool WithinRun() const { return behind_ || isWithin_ || at_.by == Position::By::kSeq; }

  void Print(std::string& out) const {
    reader::Print(out, "Run %d at %s\n", run_, UtcText(utcMs_).c_str());
    if (nextInMs_ > 0) {
      reader::Print(out, "The recorder was off: run %d had ended %s before, run %d began %s later.\n", run_,
                    DurationText(lastAgeMs_).c_str(), run_ + 1, DurationText(nextInMs_).c_str());
    }
    reader::Print(out, "%14s  %-20s %s\n", "age", "source", "value");
    for (const Key& key : order_) {
      const Value& value = values_.at(key);
      const std::string age = (value.older ? "over " : "") + DurationText(value.ageMs);
      reader::Print(out, "%14s  %-20s %s\n", age.c_str(), Printable(key.second).c_str(),
                    TextOf(value).c_str());
    }
  }

  void Write(JsonWriter& json) const {
    json.Object().Number("run", run_);
    WriteTime("at", utcMs_, json);
    json.Flag("recorderWasOff", nextInMs_ > 0);
    json.Array("values");
    for (const Key& key : order_) {
      const Value& value = values_.at(key);
      json.Object().Text("table", key.first);
      json.Text("source", key.second);
      json.Text("text", value.text);
      json.Number("ageMs", value.ageMs);
      json.Flag("isOlder", value.older);
      json.Flag("noData", IsSilent(value));
      json.EndObject();
    }
    json.EndArray();
    json.EndObject();
  }

 private:
  // Handles the first row of the next run: the instant is after all earlier rows.
  bool EnterNext(const Row& row, std::int64_t ageMs) {
    if (!behind_ && run_ != 0 && row.run == run_ + 1 && at_.by == Position::By::kUtc) nextInMs_ = -ageMs;
    isWithin_ = run_ != 0;
    return false;
  }

  void SetValue(const Row& row, std::int64_t ageMs) {
    Key key(row.table, row.source);
    if (row.table == "version") key.first += std::to_string(row.Number("component"));
    const auto [place, isNew] = values_.try_emplace(key);
    Value& value = place->second;
    if (isNew) order_.push_back(key);
    if (row.event == EventKind::kRestated && !isNew) return;
    value.ageMs = ageMs;
    value.older = row.event == EventKind::kRestated;
    value.text.clear();
    AppendRowText(row, value.text);
    value.isPeriodic = IsPeriodic(row);
    if (value.isPeriodic && !value.older) value.freshness.Add(row.tick);
  }

  static bool IsSilent(const Value& value) {
    return value.isPeriodic && value.ageMs > value.freshness.LimitMs();
  }

  static std::string TextOf(const Value& value) {
    if (!IsSilent(value)) return value.text;
    return "no data for " + DurationText(value.ageMs) + ", the last was: " + value.text;
  }

  // Whether the instant's UTC can be taken from this row. With an instant by arrival tick, UTC from a sender
  // tick would be off.
  bool UtcOfInstant(const Row& row) const {
    if (row.utcMs == kNoUtc) return false;
    switch (at_.by) {
      case Position::By::kTick:
        return !row.utcBySender;
      case Position::By::kUtc:
        return true;
      case Position::By::kSeq:
        return at_.Compare(row) == 0;
    }
    return false;
  }

  // Records are in order of arrival; their UTC may be out of order by this much.
  static constexpr std::int64_t kDisorderMs = 60'000;
  using Key = std::pair<std::string, std::string>;  // table, source

  Position at_;
  int run_ = 0;
  bool behind_ = false;
  bool isWithin_ = false;
  std::int64_t lastAgeMs_ = 0;  // age of the last record before the instant
  std::int64_t nextInMs_ = 0;   // time to the next run, if the instant is between two runs
  std::int64_t utcMs_ = kNoUtc;
  std::vector<Key> order_;
  std::map<Key, Value> values_;
};

int State(const StateOptions& options) {
  Messages messages;
  const std::vector<Run> runs = options.recordings.Find(messages);
  const std::optional<Position> at = Resolve(*options.at, runs, messages);
  if (!at) return kFinding;
  Snapshot snapshot(*at);
  RunReader reader(runs, nullptr, true, messages);
  reader.ShowProgress(true);
  for (Row row; reader.Next(row) && snapshot.Take(row);) {
  }
  if (snapshot.Empty()) {
    messages.Problem("nothing is recorded at or before " + options.at->said);
    return kFinding;
  }
  if (!snapshot.WithinRun()) messages.Note("nothing is recorded after " + options.at->said);
  Output out(Output::Kind::kText);
  if (options.json) {
    JsonWriter json(out.Text());
    snapshot.Write(json);
    out.Text() += '\n';
  } else {
    snapshot.Print(out.Text());
  }
  return out.Flush() ? messages.Status() : kFinding;
}

}  // namespace

Action DeclareState(CLI::App& app) {
  auto options = std::make_shared<StateOptions>();
  AddRecordings(app, options->recordings);
  AddInstant(app, "--at", options->at, "the instant")->required();
  app.add_flag("--json", options->json, "as JSON");
  app.footer(InstantFooter() +
             "Examples:\n"
             "  metadata state --at crash\n"
             "  metadata state --at bookmark:2-10s metadata.000007.db\n"
             "  metadata state --at 2024-05-01T12:00:30Z");
  return [options] { return State(*options); };
}

}  // namespace reader
