#include <gtest/gtest.h>

#include <cstdint>
#include <utility>

#include "TickOf.h"

namespace {

TEST(Systick, WrapsAfter32BitsAndIsNeverTheUnavailableTick) {
  constexpr std::pair<std::int64_t, unsigned int> kTicks[] = {
      {0x7FFFFFFF, 0x7FFFFFFF}, {0xFFFFFFFE, 0xFFFFFFFE},  {0xFFFFFFFF, 0xFFFFFFFE},
      {0x100000000, 0},         {0x1FFFFFFFF, 0xFFFFFFFE}, {0x200000005, 5}};
  for (const auto& [milliseconds, tick] : kTicks) EXPECT_EQ(TickOf(milliseconds), tick) << milliseconds;
}

}  // namespace
