#include "TickShift.h"

#include <algorithm>
#include <map>
#include <vector>

namespace reader {

TickShift FindTickShift(const std::deque<ComparedRow>& a, const std::deque<ComparedRow>& b) {
  std::map<std::string, std::deque<const ComparedRow*>> byContent;
  for (const ComparedRow& row : b) byContent[row.table + ' ' + row.source + ' ' + row.values].push_back(&row);
  std::map<std::uint32_t, int> votes;
  std::vector<std::int64_t> arrivals;
  for (const ComparedRow& row : a) {
    auto& alike = byContent[row.table + ' ' + row.source + ' ' + row.values];
    if (alike.empty()) continue;
    const ComparedRow& other = *alike.front();
    alike.pop_front();
    if (row.ticked && other.ticked) ++votes[other.senderTick - row.senderTick];
    arrivals.push_back(other.tick - row.tick);
  }
  TickShift shift;
  const auto most = std::max_element(votes.begin(), votes.end(),
                                     [](const auto& x, const auto& y) { return x.second < y.second; });
  if (most != votes.end()) shift.sender = most->first;
  const auto middle = arrivals.begin() + static_cast<std::ptrdiff_t>(arrivals.size() / 2);
  std::nth_element(arrivals.begin(), middle, arrivals.end());
  if (middle != arrivals.end()) shift.arrivalMs = *middle;
  return shift;
}

}  // namespace reader
