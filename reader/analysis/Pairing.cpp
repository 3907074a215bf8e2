#include "Pairing.h"

#include <algorithm>

namespace reader {
namespace {

// Damaged recordings may name any number of sources.
constexpr std::size_t kMostSources = 4096;

Pairing::Side Other(Pairing::Side side) {
  return side == Pairing::kA ? Pairing::kB : Pairing::kA;
}

}  // namespace

std::uint32_t Pairing::MovedTick(Side side, const ComparedRow& row) const {
  return row.senderTick + (side == kA ? shift_.sender : 0);
}

std::size_t Pairing::Hash(Side side, const ComparedRow& row) const {
  constexpr std::size_t kPrime = 0x9E3779B1U;
  const std::hash<std::string> hash;
  std::size_t sum = hash(row.table) * kPrime + hash(row.source);
  sum = sum * kPrime + hash(row.values);
  return sum * kPrime + MovedTick(side, row);
}

bool Pairing::IsSame(const ComparedRow& a, const ComparedRow& b) const {
  return a.ticked == b.ticked && MovedTick(kA, a) == b.senderTick && a.SameContent(b);
}

void Pairing::Take(Side side, const ComparedRow& row) {
  Run& own = runs_[side];
  Run& other = runs_[Other(side)];
  const std::size_t hash = Hash(side, row);
  own.senderTick = MovedTick(side, row);
  const auto found = other.index.lower_bound({hash, 0});
  if (found != other.index.end() && found->first == hash) {
    const auto partner = other.waiting.find(found->second);
    const ComparedRow& a = side == kA ? row : partner->second;
    const ComparedRow& b = side == kA ? partner->second : row;
    if (IsSame(a, b)) {
      Pair(a, b);
      (void)Remove(Other(side), partner);
      return;
    }
  }
  own.waiting.emplace(row.rank, row);
  own.index.emplace(hash, row.rank);
  if (row.rank - own.waiting.begin()->first >= kReach) GiveUp(side);
}

void Pairing::End() {
  for (const Side side : {kA, kB}) {
    while (!runs_[side].waiting.empty()) GiveUp(side);
  }
}

// Reads both runs evenly. After a long stretch that only one run has, the run with the earlier ticks catches
// up.
Pairing::Side Pairing::Behind() const {
  constexpr std::size_t kMany = 100;
  const Run& a = runs_[kA];
  const Run& b = runs_[kB];
  const auto lead = static_cast<std::int32_t>(a.senderTick - b.senderTick);
  if (std::min(a.waiting.size(), b.waiting.size()) >= kMany && lead != 0) return lead < 0 ? kA : kB;
  return a.waiting.size() <= b.waiting.size() ? kA : kB;
}

ComparedRow Pairing::Remove(Side side, std::map<std::int64_t, ComparedRow>::iterator at) {
  Run& run = runs_[side];
  run.index.erase({Hash(side, at->second), at->first});
  ComparedRow row = std::move(at->second);
  run.waiting.erase(at);
  return row;
}

void Pairing::Pair(const ComparedRow& a, const ComparedRow& b) {
  ++pairs_;
  if (!CheckOrder(a, b)) tell_(Difference::kOrder, &a, &b);
  const std::int64_t lateMs = b.tick - a.tick - shift_.arrivalMs;
  const bool happened = a.event != EventKind::kInitial;  // initial values arrive when the process asks
  if (limits_.toleranceMs && happened && (lateMs < -*limits_.toleranceMs || lateMs > *limits_.toleranceMs)) {
    tell_(Difference::kArrival, &a, &b);
  }
  if (limits_.utc && a.utcMs != b.utcMs) tell_(Difference::kUtc, &a, &b);
}

// The later record of a pair has just been read. The pair is out of order if the earlier record stands before
// a record whose partner was read already. Records of several sources may change places within the tolerance:
// they reach a recorder over several connections.
bool Pairing::CheckOrder(const ComparedRow& a, const ComparedRow& b) {
  const std::array<const ComparedRow*, 2> rows{&a, &b};
  if (latestOfSource_.size() >= kMostSources) latestOfSource_.clear();
  Latests& ofSource = latestOfSource_[a.table + ' ' + a.source];
  bool inOrder = true;
  for (const Side side : {kA, kB}) {
    if (rows[side]->rank < ofSource[side].rank[side]) inOrder = false;
    const Latest& latest = latest_[side];
    if (rows[side]->rank > latest.rank[side]) continue;
    const Side other = Other(side);
    const std::int64_t apartMs =
        std::max(latest.tick[side] - rows[side]->tick, rows[other]->tick - latest.tick[other]);
    if (apartMs > limits_.toleranceMs.value_or(0)) inOrder = false;
  }
  for (Latests* latests : {&latest_, &ofSource}) {
    for (const Side side : {kA, kB}) {
      if (rows[side]->rank > (*latests)[side].rank[side])
        (*latests)[side] = {{a.rank, b.rank}, {a.tick, b.tick}};
    }
  }
  return inOrder;
}

// A record without a tick waits, too, when the record before it has no partner: equal values are then enough.
void Pairing::GiveUp(Side side) {
  const ComparedRow row = Remove(side, runs_[side].waiting.begin());
  auto& others = runs_[Other(side)].waiting;
  const auto alike = std::find_if(others.begin(), others.end(), [&row](const auto& other) {
    return row.ticked == other.second.ticked && row.SameContent(other.second);
  });
  const auto atSameTick = std::find_if(others.begin(), others.end(), [&](const auto& other) {
    return row.ticked == other.second.ticked && row.SameSource(other.second) &&
           MovedTick(side, row) == MovedTick(Other(side), other.second);
  });
  const bool sameTick = atSameTick != others.end() && (row.ticked || alike == others.end());
  const auto partner = sameTick ? atSameTick : alike;
  if (partner == others.end()) {
    tell_(side == kA ? Difference::kOnlyInA : Difference::kOnlyInB, side == kA ? &row : nullptr,
          side == kA ? nullptr : &row);
    return;
  }
  const ComparedRow other = Remove(Other(side), partner);
  if (!sameTick && !row.ticked) {
    ++pairs_;
    return;
  }
  tell_(sameTick ? Difference::kValue : Difference::kTick, side == kA ? &row : &other,
        side == kA ? &other : &row);
}

}  // namespace reader
