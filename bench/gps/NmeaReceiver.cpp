#include "NmeaReceiver.h"

#include <algorithm>

#include "log/LogLine.h"

namespace bench {

namespace {

constexpr LogSource log{"NmeaReceiver"};

}  // namespace

NmeaReceiver::NmeaReceiver(const std::string& path) {
  if (!ReadNmea(path, log_)) log(kLogError, "Cannot read ", path);
}

void NmeaReceiver::BeginAt(double driveSeconds) {
  while (!AtEnd() && SecondsOfNext() < driveSeconds) ++next_;
}

int NmeaReceiver::MsToNext(double driveSeconds, double speed) const {
  constexpr double kLongestMs = 1000;
  if (AtEnd()) return -1;
  const double ms = std::max(0.0, SecondsOfNext() - driveSeconds) * 1000 / speed;
  return static_cast<int>(std::min(ms, kLongestMs)) + 1;
}

bool NmeaReceiver::Next(double driveSeconds, GpsStatusItem& item) {
  if (AtEnd() || SecondsOfNext() > driveSeconds) return false;
  const std::uint32_t tick = item.tick;
  item = log_.readings[next_++].item;
  item.tick = tick;
  return true;
}

}  // namespace bench
