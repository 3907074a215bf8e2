#include "SystemStoreClock.h"

#include <ctime>

#include "system/Systick.h"

namespace store {
namespace {

class MachineClock : public StoreClock {
 public:
  unsigned int TickMs() const override { return Systick().SystemTick(); }
  std::int64_t UtcMs() const override {
    // std::chrono's clock ends in 2038 if the library was built with a 32-bit time_t.
    timespec now{};
    (void)clock_gettime(CLOCK_REALTIME, &now);
    return std::int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1000000;
  }
};

}  // namespace

const StoreClock& SystemClock() {
  static const MachineClock clock;
  return clock;
}

}  // namespace store
