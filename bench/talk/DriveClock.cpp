#include "DriveClock.h"

#include <sstream>

namespace bench {

std::string DriveClock::Text() const {
  const auto beginUs = std::chrono::duration_cast<std::chrono::microseconds>(begin_.time_since_epoch());
  return std::to_string(beginUs.count()) + " " + std::to_string(speed_);
}

bool DriveClock::Take(const std::string& text) {
  std::istringstream words(text);
  std::int64_t beginUs = 0;
  double speed = 0;
  if (!(words >> beginUs >> speed) || !(speed > 0)) return false;
  *this = DriveClock(Clock::time_point(std::chrono::microseconds(beginUs)), speed);
  return true;
}

}  // namespace bench
