#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "items/GpsStatusItem.h"

namespace bench {

// The kinds of gpsd's reports, each a JSON object in one line.
enum class GpsdReport {
  kReading,   // TPV: `item` is filled in
  kWatching,  // WATCH: it has begun to report
  kOther      // anything else, also what is no JSON
};

class GpsdReports {
 public:
  // Takes a line; `item` holds the last reading. A SKY report is kept for the readings that follow. Without a
  // fix the place stays as it was. Speed and course that are told less often than the place are repeated
  // while the fix lasts, at most NmeaFix::kMostRepeats times. Other values that are missing are not filled
  // in.
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
