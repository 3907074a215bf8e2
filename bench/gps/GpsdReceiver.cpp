#include "GpsdReceiver.h"

#include "GpsItem.h"

namespace bench {

bool GpsdReceiver::Next(double /*driveSeconds*/, GpsStatusItem& item) {
  constexpr std::chrono::milliseconds kSilence{kSilenceMs};
  constexpr int kLinesATurn = 64;  // then the endpoint receives messages
  std::string line;
  for (int i = 0; i < kLinesATurn; ++i) {
    const GpsdConnection::Input input = connection_.Read(line);
    if (input == GpsdConnection::Input::kGone) return Lose(item, "is gone");
    if (input == GpsdConnection::Input::kNothing) break;
    const GpsdReport report = reports_.Take(line, item);
    if (report == GpsdReport::kWatching) say_("follows the gpsd at " + connection_.Address());
    if (report != GpsdReport::kReading) continue;
    lastReading_ = Clock::now();
    return true;
  }
  if (connection_.Failures() == 1 && !missingSaid_) {
    missingSaid_ = true;
    say_("no gpsd answers at " + connection_.Address() + " yet");
  }
  return item.HasFix() && Clock::now() - lastReading_ > kSilence && Lose(item, "is silent");
}

bool GpsdReceiver::Lose(GpsStatusItem& item, const char* why) {
  say_("the gpsd at " + connection_.Address() + " " + why);
  const bool had = item.HasFix();
  LoseFix(item);
  return had;
}

}  // namespace bench
