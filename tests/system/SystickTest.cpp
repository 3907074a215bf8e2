#include <gtest/gtest.h>

#include <cstdint>
#include <ctime>
#include <utility>

#include "TickOf.h"
#include "system/Systick.h"

namespace {

TEST(Systick, WrapsAfter32BitsAndIsNeverTheUnavailableTick) {
  constexpr std::pair<std::int64_t, unsigned int> kTicks[] = {
      {0x7FFFFFFF, 0x7FFFFFFF}, {0xFFFFFFFE, 0xFFFFFFFE},  {0xFFFFFFFF, 0xFFFFFFFE},
      {0x100000000, 0},         {0x1FFFFFFFF, 0xFFFFFFFE}, {0x200000005, 5}};
  for (const auto& [milliseconds, tick] : kTicks) EXPECT_EQ(TickOf(milliseconds), tick) << milliseconds;
}

TEST(Systick, IsTheTimeSinceBoot) {
  const auto now = [] {
    timespec time{};
    clock_gettime(CLOCK_BOOTTIME, &time);
    return TickOf(std::int64_t{time.tv_sec} * 1000 + time.tv_nsec / 1000000);
  };
  const unsigned int before = now();
  const unsigned int tick = Systick().SystemTick();
  EXPECT_LE(tick - before, now() - before);  // differences, as the tick may wrap in between
}

}  // namespace
