#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "Freshness.h"
#include "JsonWriter.h"
#include "Position.h"

namespace reader {

// The values at an instant. Between two runs, the values at the end of the earlier run.
class Snapshot {
 public:
  explicit Snapshot(const Position& at) : at_(at) {}

  // Returns false when later rows cannot matter.
  bool Take(const Row& row);

  bool Empty() const { return values_.empty(); }
  // Whether anything is recorded after the instant.
  bool WithinRun() const { return behind_ || isWithin_ || at_.by == Position::By::kSeq; }

  void Print(std::string& out) const;
  void Write(JsonWriter& json) const;

 private:
  // The last value of a source.
  struct Value {
    std::string text;
    std::int64_t ageMs = 0;
    bool older = false;  // known only from a restated record: at least this old
    bool isPeriodic = false;
    Freshness freshness;

    bool IsSilent() const { return isPeriodic && ageMs > freshness.LimitMs(); }
    std::string Text() const;
  };
  using Key = std::pair<std::string, std::string>;  // table, source

  bool EnterNext(const Row& row, std::int64_t ageMs);
  void SetValue(const Row& row, std::int64_t ageMs);
  bool UtcOfInstant(const Row& row) const;

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

}  // namespace reader
