#include "SystemStoreClock.h"

#include <ctime>

#include "system/Systick.h"

namespace store {
namespace {

class MachineClock : public StoreClock {
 public:
  unsigned int TickMs() const override { return Systick().SystemTick(); }
  std::int64_t UtcMs() const override {
    // Not the standard library's clock, which ends in 2038 where its own time_t has 32 bits.
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
