#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "ComparedRows.h"
#include "TickShift.h"

namespace reader {

// How a record of run A and its partner in run B differ.
enum class Difference : unsigned char { kValue, kTick, kOrder, kArrival, kUtc, kOnlyInA, kOnlyInB, kCount };

// What makes a difference of the records' times.
struct TimeLimits {
  std::optional<std::int64_t> toleranceMs;  // of arrival; null: arrival is not compared
  bool utc = false;
};

// Finds the partner of each record among the last records of the other run:
//   1. the same source, values and sender tick (moved by the shift)
//   2. a record that found none within kReach records: the same source with the same tick or the same values
// A record without a partner is in one run only. Memory does not depend on the number of records.
class Pairing {
 public:
  enum Side : unsigned char { kA, kB };
  // Told of each difference; the record of a run without it is null.
  using Tell = std::function<void(Difference kind, const ComparedRow* a, const ComparedRow* b)>;

  Pairing(TickShift shift, TimeLimits limits, Tell tell)
      : shift_(shift), limits_(limits), tell_(std::move(tell)) {}

  void Take(Side side, const ComparedRow& row);
  // No record follows.
  void End();
  // The run to read from next.
  Side Behind() const;
  // Pairs of records with the same values and sender tick.
  std::int64_t Pairs() const { return pairs_; }

 private:
  static constexpr std::int64_t kReach = 1000;
  using Key = std::pair<std::size_t, std::int64_t>;  // hash and rank

  struct Run {
    std::map<std::int64_t, ComparedRow> waiting;  // by rank
    std::set<Key> index;                          // of `waiting`
    std::uint32_t senderTick = 0;                 // of the last record, by the ticks of run B
  };
  // The pair with the latest record of a run.
  struct Latest {
    std::array<std::int64_t, 2> rank{};
    std::array<std::int64_t, 2> tick{};
  };
  using Latests = std::array<Latest, 2>;  // of each run

  std::uint32_t MovedTick(Side side, const ComparedRow& row) const;
  std::size_t Hash(Side side, const ComparedRow& row) const;
  bool IsSame(const ComparedRow& a, const ComparedRow& b) const;
  ComparedRow Remove(Side side, std::map<std::int64_t, ComparedRow>::iterator at);
  void Pair(const ComparedRow& a, const ComparedRow& b);
  bool CheckOrder(const ComparedRow& a, const ComparedRow& b);
  void GiveUp(Side side);

  TickShift shift_;
  TimeLimits limits_;
  Tell tell_;
  std::array<Run, 2> runs_;
  Latests latest_;
  std::map<std::string, Latests> latestOfSource_;
  std::int64_t pairs_ = 0;
};

}  // namespace reader
