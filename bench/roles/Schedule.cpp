#include "Schedule.h"

#include <algorithm>
#include <cmath>

namespace bench {

void Schedule::SetRate(const Reading& reading, double perSecond) {
  auto row = std::find_if(rows_.begin(), rows_.end(), [&](const Row& r) { return r.reading == &reading; });
  if (row == rows_.end()) row = rows_.insert(row, {&reading, reading.begin()});
  row->perSecond = perSecond;
  if (clock_.Running()) Align(*row);
}

void Schedule::Begin() {
  for (Row& row : rows_) Align(row);
}

void Schedule::Align(Row& row) const {
  if (row.perSecond > 0) row.nextSecond = std::ceil(clock_.Seconds() * row.perSecond) / row.perSecond;
}

int Schedule::MsToNext() const {
  constexpr double kLongest = 1000;
  double seconds = -1;
  for (const Row& row : rows_) {
    if (!clock_.Running() || row.perSecond <= 0) continue;
    const double wait = std::max(0.0, row.nextSecond - clock_.Seconds()) / clock_.Speed();
    if (seconds < 0 || wait < seconds) seconds = wait;
  }
  return seconds < 0 ? -1 : static_cast<int>(std::ceil(std::min(seconds, kLongest) * 1000));
}

void Schedule::SendDue(const Send& send) {
  if (!clock_.Running()) return;
  for (Row& row : rows_) {
    while (row.perSecond > 0 && row.nextSecond <= clock_.Seconds()) {
      send(*row.reading, row.advance, row.nextSecond);
      row.nextSecond += 1 / row.perSecond;
    }
  }
}

}  // namespace bench
