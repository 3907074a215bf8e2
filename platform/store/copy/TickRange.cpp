#include "TickRange.h"

namespace store {
namespace {

constexpr std::uint32_t kRunBegin = 0;
constexpr std::uint32_t kRunEnd = 0xFFFFFFFFU;
constexpr TickRange kNothing{1, 0};

std::int64_t NewestNotAfter(std::int64_t end, std::uint32_t tick) {
  return end - std::int64_t{static_cast<std::uint32_t>(end) - tick};
}

// Whether a tick that never came is still to come, by the shorter way round the wrap.
bool IsAhead(std::int64_t end, std::uint32_t tick) {
  return static_cast<std::int32_t>(tick - static_cast<std::uint32_t>(end)) > 0;
}

TickRange FromBeginning(std::uint32_t last, std::int64_t begin, std::int64_t end) {
  const std::int64_t to = NewestNotAfter(end, last);
  if (to >= begin) return {TickRange::kFromBeginning, to};
  return IsAhead(end, last) ? TickRange() : kNothing;
}

}  // namespace

TickRange RangeOf(std::uint32_t first, std::uint32_t last, std::int64_t begin, std::int64_t end) {
  if (first == kRunBegin && last == kRunEnd) return {};
  if (first == kRunBegin) return FromBeginning(last, begin, end);
  const std::int64_t from = NewestNotAfter(end, first);
  if (last == kRunEnd) {
    return from < begin && IsAhead(end, first) ? kNothing : TickRange{from, TickRange::kToEnd};
  }
  const std::int64_t to = from + std::int64_t{last - first};
  return to < begin ? kNothing : TickRange{from, to};
}

}  // namespace store
