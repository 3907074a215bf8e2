// Parses any text as GPS data: as lines of gpsd if it begins with "{", else as an NMEA log. Every reading
// must be a place on earth.

#include <string>

#include "GpsItem.h"
#include "GpsdReports.h"
#include "Input.h"
#include "NmeaLog.h"

namespace bench {

namespace {

void CheckReading(const GpsStatusItem& item) {
  constexpr unsigned int kDayMs = 24 * 3600 * 1000 + 1000;  // with a leap second
  Require(item.latitudeDegrees <= 90 && item.longitudeDegrees <= 180);
  Require(item.latitudeMinutes < 60 && item.longitudeMinutes < 60);
  Require(item.latitudeMinuteFraction < 10000 && item.longitudeMinuteFraction < 10000);
  Require(item.utcTimeOfDayMs < kDayMs);
  Require(item.quality <= 8 && item.fixDimensions <= 3);
}

void TakeGpsd(Input input) {
  GpsdReports reports;
  GpsStatusItem item = NoFix();
  while (!input.Done()) {
    (void)reports.Take(input.Line(), item);
    CheckReading(item);
  }
}

void TakeNmea(std::string_view text) {
  const NmeaLog log = ParseNmea(text);
  std::int64_t atMs = 0;
  for (const NmeaReading& reading : log.readings) {
    Require(reading.atMs >= atMs);
    atMs = reading.atMs;
    CheckReading(reading.item);
  }
  Require(log.Fixes() <= log.readings.size() && !log.Summary().empty());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  if (text.starts_with('{')) {
    TakeGpsd({data, size});
  } else {
    TakeNmea(text);
  }
  return 0;
}

}  // namespace bench
