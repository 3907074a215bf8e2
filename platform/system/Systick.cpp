#include "system/Systick.h"

#include <ctime>

#include "TickOf.h"

unsigned int Systick::SystemTick() const {
  timespec now{};
  if (clock_gettime(CLOCK_BOOTTIME, &now) != 0) return kUnavailable;
  return TickOf(std::int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1000000);
}
