#include "GpsdReceiver.h"

#include "GpsItem.h"
#include "log/LogLine.h"

namespace {

constexpr LogSource log{"GpsdReceiver"};

}  // namespace

bool GpsdReceiver::Next(double /*driveSeconds*/, GpsStatusItem& item) {
  constexpr std::chrono::milliseconds kSilence{kSilenceMs};
  constexpr int kLinesATurn = 64;  // then the endpoint has its turn
  std::string line;
  for (int i = 0; i < kLinesATurn; ++i) {
    const GpsdConnection::Input input = connection_.Read(line);
    if (input == GpsdConnection::Input::kGone) return Lose(item, "is gone");
    if (input == GpsdConnection::Input::kNothing) break;
    const GpsdReport report = reports_.Take(line, item);
    if (report == GpsdReport::kWatching) log(kLogUnusual, "Follows the gpsd at ", peer_);
    if (report != GpsdReport::kReading) continue;
    lastReading_ = Clock::now();
    return true;
  }
  return item.HasFix() && Clock::now() - lastReading_ > kSilence && Lose(item, "is silent");
}

bool GpsdReceiver::Lose(GpsStatusItem& item, const char* why) {
  log(kLogUnusual, "The gpsd at ", peer_, " ", why);
  const bool had = item.HasFix();
  LoseFix(item);
  return had;
}
