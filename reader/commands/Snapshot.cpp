#include "Snapshot.h"

#include "Encode.h"
#include "Print.h"
#include "RowText.h"
#include "RunJson.h"
#include "Utc.h"

namespace reader {
namespace {

// Records are in order of arrival; their UTC may be out of order by this much.
constexpr std::int64_t kDisorderMs = 60'000;

}  // namespace

bool Snapshot::Take(const Row& row) {
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

// Handles the first row of the next run: the instant is after all earlier rows.
bool Snapshot::EnterNext(const Row& row, std::int64_t ageMs) {
  if (!behind_ && run_ != 0 && row.run == run_ + 1 && at_.by == Position::By::kUtc) nextInMs_ = -ageMs;
  isWithin_ = run_ != 0;
  return false;
}

void Snapshot::SetValue(const Row& row, std::int64_t ageMs) {
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

// Whether the instant's UTC can be taken from this row. With an instant by arrival tick, UTC from a sender
// tick would be off.
bool Snapshot::UtcOfInstant(const Row& row) const {
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

std::string Snapshot::Value::Text() const {
  if (!IsSilent()) return text;
  return "no data for " + DurationText(ageMs) + ", the last was: " + text;
}

void Snapshot::Print(std::string& out) const {
  reader::Print(out, "Run %d at %s\n", run_, UtcText(utcMs_).c_str());
  if (nextInMs_ > 0) {
    reader::Print(out, "The recorder was off: run %d had ended %s before, run %d began %s later.\n", run_,
                  DurationText(lastAgeMs_).c_str(), run_ + 1, DurationText(nextInMs_).c_str());
  }
  reader::Print(out, "%14s  %-20s %s\n", "age", "source", "value");
  for (const Key& key : order_) {
    const Value& value = values_.at(key);
    const std::string age = (value.older ? "over " : "") + DurationText(value.ageMs);
    reader::Print(out, "%14s  %-20s %s\n", age.c_str(), Printable(key.second).c_str(), value.Text().c_str());
  }
}

void Snapshot::Write(JsonWriter& json) const {
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
    json.Flag("noData", value.IsSilent());
    json.EndObject();
  }
  json.EndArray();
  json.EndObject();
}

}  // namespace reader
