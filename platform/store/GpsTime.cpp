#include "GpsTime.h"

#include <chrono>

#include "RecordTime.h"
#include "items/GpsStatusItem.h"

namespace store {
namespace {

constexpr std::uint32_t kLastDate = 20991231;
constexpr std::uint32_t kDayMs = 86'400'000;
constexpr std::uint32_t kSimulation = 8;

}  // namespace

std::optional<std::int64_t> UtcMsOf(const GpsStatusItem& reading) {
  const std::uint32_t d = reading.utcDate;
  if (!reading.HasFix() || reading.valid == 0 || reading.quality == kSimulation) return std::nullopt;
  if (d > kLastDate || reading.utcTimeOfDayMs >= kDayMs) return std::nullopt;
  const std::chrono::year_month_day date(std::chrono::year(static_cast<int>(d / 10000)),
                                         std::chrono::month(d / 100 % 100), std::chrono::day(d % 100));
  // A receiver that does not know the date yet reports one from years ago.
  if (!date.ok() || std::chrono::sys_days(date) < kFirstTrustedDay) return std::nullopt;
  const std::chrono::milliseconds midnight = std::chrono::sys_days(date).time_since_epoch();
  return midnight.count() + reading.utcTimeOfDayMs;
}

}  // namespace store
