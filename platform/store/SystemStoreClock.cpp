#include "SystemStoreClock.h"

#include <chrono>

#include "system/Systick.h"

namespace store {
namespace {

class MachineClock : public StoreClock {
 public:
  unsigned int TickMs() const override { return Systick().SystemTick(); }
  std::int64_t UtcMs() const override {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
  }
};

}  // namespace

const StoreClock& SystemClock() {
  static const MachineClock clock;
  return clock;
}

}  // namespace store
