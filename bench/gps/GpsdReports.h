#pragma once

#include <string>

#include "items/GpsStatusItem.h"

// What gpsd reports, one JSON object a line.
enum class GpsdReport {
  kReading,   // TPV: `item` is filled in
  kWatching,  // WATCH: it has begun to report
  kOther      // anything else, also what is no JSON
};

class GpsdReports {
 public:
  // Takes a line. A SKY report is kept for the readings that follow. Without a fix the place stays as
  // it was; what is not told is not filled in.
  GpsdReport Take(const std::string& line, GpsStatusItem& item);

 private:
  std::uint16_t inView_ = 0;
  std::uint16_t used_ = 0;
  std::int32_t bestDecibels_ = GpsStatusItem::kNoSignal;
};
