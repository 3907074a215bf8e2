#include "Comparison.h"

#include <algorithm>
#include <deque>
#include <numeric>
#include <utility>

namespace reader {
namespace {

// Records that tell the shift of the ticks.
constexpr std::size_t kFirstRecords = 500;
constexpr std::size_t kMostSources = 4096;

// A run of a comparison: first the records that were read ahead.
class Ahead {
 public:
  Ahead(const Run& run, ComparedScope scope, Messages& messages) : rows_(run, scope, messages) {
    for (ComparedRow row; first_.size() < kFirstRecords && rows_.Next(row);) first_.push_back(row);
  }
  const std::deque<ComparedRow>& FirstOnes() const { return first_; }
  bool Next(ComparedRow& row) {
    if (first_.empty()) return rows_.Next(row);
    row = std::move(first_.front());
    first_.pop_front();
    return true;
  }

 private:
  ComparedRows rows_;
  std::deque<ComparedRow> first_;
};

struct Words {
  const char* counted;
  const char* text;
};
constexpr std::array<Words, static_cast<std::size_t>(Difference::kCount)> kWords{{
    {"values", "the values differ"},
    {"ticks", "the sender ticks differ by"},
    {"order", "the order differs"},
    {"arrivals", "the arrivals differ by"},
    {"UTC", "the times in UTC differ by"},
    {"only in A", "only A has the record"},
    {"only in B", "only B has the record"},
}};

}  // namespace

void Comparison::Compare(const Run& a, const Run& b, ComparedScope scope, TimeLimits limits,
                         Messages& messages) {
  std::array<Ahead, 2> runs{Ahead(a, scope, messages), Ahead(b, scope, messages)};
  shift_ = FindTickShift(runs[0].FirstOnes(), runs[1].FirstOnes());
  Pairing pairing(shift_, limits,
                  [this](Difference kind, const auto* inA, const auto* inB) { Take(kind, inA, inB); });
  std::array<bool, 2> ended{};
  for (ComparedRow row; !ended[0] || !ended[1];) {
    Pairing::Side side = pairing.Behind();
    if (ended[side]) side = side == Pairing::kA ? Pairing::kB : Pairing::kA;
    if (runs[side].Next(row)) {
      pairing.Take(side, row);
    } else {
      ended[side] = true;
    }
  }
  pairing.End();
  pairs_ = pairing.Pairs();
}

void Comparison::Take(Difference kind, const ComparedRow* a, const ComparedRow* b) {
  const ComparedRow& row = a != nullptr ? *a : *b;
  const bool isCounted = sources_.size() < kMostSources || sources_.contains(row.source);
  ++sources_[isCounted ? row.source : "other sources"][static_cast<std::size_t>(kind)];
  if (first_ && first_->rank <= row.rank) return;
  First first{kind, {}, {}, row.rank};
  if (a != nullptr) first.a = *a;
  if (b != nullptr) first.b = *b;
  first_ = std::move(first);
}

std::int64_t Comparison::Total() const {
  std::int64_t total = 0;
  for (const auto& [source, counts] : sources_) total = std::accumulate(counts.begin(), counts.end(), total);
  return total;
}

std::optional<std::int64_t> DifferenceMs(const Comparison::First& first, TickShift shift) {
  if (!first.a || !first.b) return std::nullopt;
  switch (first.kind) {
    case Difference::kTick:
      return static_cast<std::int32_t>(first.b->senderTick - first.a->senderTick - shift.sender);
    case Difference::kArrival:
      return first.b->tick - first.a->tick - shift.arrivalMs;
    case Difference::kUtc:
      return first.b->utcMs - first.a->utcMs;
    default:
      return std::nullopt;
  }
}

std::string DifferenceText(const Comparison::First& first, TickShift shift) {
  const std::string text = kWords[static_cast<std::size_t>(first.kind)].text;
  const auto ms = DifferenceMs(first, shift);
  return ms ? text + " " + std::to_string(*ms) + " ms" : text;
}

std::string CountsText(const Comparison::Counts& counts) {
  std::string text;
  for (std::size_t kind = 0; kind < counts.size(); ++kind) {
    if (counts[kind] == 0) continue;
    text += std::string(text.empty() ? "" : ", ") + kWords[kind].counted + " " + std::to_string(counts[kind]);
  }
  return text;
}

}  // namespace reader
