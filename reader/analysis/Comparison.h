#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "ComparedRows.h"
#include "Pairing.h"

namespace reader {

// What two runs differ in.
class Comparison {
 public:
  using Counts = std::array<std::int64_t, static_cast<std::size_t>(Difference::kCount)>;
  struct First {
    Difference kind = Difference::kValue;
    std::optional<ComparedRow> a;
    std::optional<ComparedRow> b;
    std::int64_t rank = 0;
  };

  // Reads both runs once. Memory does not depend on the number of records.
  void Compare(const Run& a, const Run& b, ComparedScope scope, TimeLimits limits, Messages& messages);

  std::int64_t Pairs() const { return pairs_; }  // records with the same values and tick
  bool Differs() const { return first_.has_value(); }
  // The first difference; only if there is one.
  const First& FirstDifference() const { return *first_; }
  TickShift Shift() const { return shift_; }
  // The number of differences of each source. Sources beyond some thousand count as "other sources".
  const std::map<std::string, Counts>& Sources() const { return sources_; }
  std::int64_t Total() const;

 private:
  void Take(Difference kind, const ComparedRow* a, const ComparedRow* b);

  TickShift shift_;
  std::int64_t pairs_ = 0;
  std::optional<First> first_;
  std::map<std::string, Counts> sources_;
};

// By how much the times of the first difference differ; nothing if it is no difference of times.
std::optional<std::int64_t> DifferenceMs(const Comparison::First& first, TickShift shift);
// One line for people: what is different, without the records.
std::string DifferenceText(const Comparison::First& first, TickShift shift);
// "values 2, only in A 1"
std::string CountsText(const Comparison::Counts& counts);

}  // namespace reader
