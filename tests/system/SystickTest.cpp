#include <gtest/gtest.h>

#include <cstdint>
#include <ctime>

#include "TickOf.h"
#include "system/Systick.h"

namespace {

TEST(Systick, WrapsAfter32BitsAndIsNeverTheUnavailableTick) {
  struct Case {
    std::int64_t milliseconds;
    unsigned int tick;
  };
  constexpr Case kCases[] = {
      {0, 0},           {0x7FFFFFFF, 0x7FFFFFFF},  {0xFFFFFFFE, 0xFFFFFFFE}, {0xFFFFFFFF, 0xFFFFFFFE},
      {0x100000000, 0}, {0x1FFFFFFFF, 0xFFFFFFFE}, {0x200000005, 5},
  };
  for (const auto& [milliseconds, tick] : kCases) EXPECT_EQ(TickOf(milliseconds), tick) << milliseconds;
}

TEST(Systick, FollowsTheTimeSinceBoot) {
  const auto milliseconds = [] {
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return std::int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1000000;
  };
  const Systick systick;
  const std::int64_t start = milliseconds();
  std::int64_t before = start;
  while (before < start + 20) {
    const unsigned int tick = systick.SystemTick();
    const std::int64_t after = milliseconds();
    // Differences, as the tick may wrap in between.
    EXPECT_LE(tick - TickOf(before), TickOf(after) - TickOf(before));
    before = after;
  }
}

}  // namespace
