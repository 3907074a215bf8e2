#include "Lateness.h"

#include <algorithm>

#include "Numbers.h"

namespace bench {

void Lateness::Add(std::chrono::nanoseconds late) {
  late = std::max(late, std::chrono::nanoseconds(0));
  ++places_[std::min(static_cast<std::size_t>(late / kPlace), kPlaces - 1)];
  ++count_;
  latest_ = std::max(latest_, late);
}

// The end of the place below which there are so many lines.
std::string Lateness::Within(std::uint64_t lines) const {
  std::uint64_t below = 0;
  std::size_t place = 0;
  while (place < kPlaces - 1 && below + places_[place] < lines) below += places_[place++];
  const std::chrono::duration<double, std::milli> end = kPlace * (place + 1);
  return OneDecimal(end.count()) + " ms";
}

std::string Lateness::Text() const {
  const std::chrono::duration<double, std::milli> latest = latest_;
  return "taken: half within " + Within((count_ + 1) / 2) + " of their time, 99 % within " +
         Within((count_ * 99 + 99) / 100) + ", the last within " + OneDecimal(latest.count()) + " ms";
}

}  // namespace bench
