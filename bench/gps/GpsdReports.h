#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "items/GpsStatusItem.h"

namespace bench {

// Kinds of gpsd reports. Each report is a JSON object on one line.
enum class GpsdReport {
  kReading,   // TPV: `item` is filled in
  kWatching,  // WATCH: gpsd has begun to report
  kOther      // any other line, JSON or not
};

class GpsdReports {
 public:
  // Reads a line into `item`, which holds the last reading. A SKY report applies to the readings that follow.
  // Without a fix the position does not change. A reading without speed and course repeats the last ones
  // while the fix lasts, at most NmeaFix::kMostRepeats times. Other missing values are not filled in.
  GpsdReport Take(const std::string& line, GpsStatusItem& item);

 private:
  void TakeSky(const nlohmann::json& sky);
  void PutMotion(const nlohmann::json& tpv, bool hadFix, GpsStatusItem& item);

  std::uint16_t inView_ = 0;
  std::uint16_t used_ = 0;
  unsigned int motionRepeats_ = 0;
  std::int32_t bestDecibels_ = GpsStatusItem::kNoSignal;
};

}  // namespace bench
