// A log that gpsd's own test harness plays to gpsd: what the bench records of it is what gpsd's own client
// saw.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "BenchRun.h"
#include "Listener.h"
#include "Recorded.h"
#include "Tracks.h"
#include "support/Eventually.h"

namespace {

using Json = nlohmann::json;

// gpsfake with its gpsd: plays one sentence for each line that it is told. At the end of its input it
// ends, and ends its gpsd.
class Gpsfake {
 public:
  Gpsfake(const TempDir& directory, const std::string& port, const std::string& log) {
    int fds[2];
    if (pipe2(fds, O_CLOEXEC) != 0) std::abort();
    input_ = fds[1];
    const std::string out = directory.Path("gpsfake");
    child_ = std::make_unique<Child>([&] {
      return ExecInto({"gpsfake", "-1", "-i", "-q", "-P", port, log}, out, out, fds[0]);
    });
    close(fds[0]);
  }
  ~Gpsfake() {
    close(input_);
    child_->Wait();
  }
  void Play(std::size_t sentences) const {
    const std::string lines(sentences, '\n');
    EXPECT_EQ(write(input_, lines.data(), lines.size()), static_cast<ssize_t>(lines.size()));
  }

 private:
  int input_ = -1;
  std::unique_ptr<Child> child_;
};

// The fixes that gpspipe printed, as the table `gps` has them.
Lines FixesIn(const std::string& reports) {
  Lines rows;
  for (const std::string& line : LinesOf(reports)) {
    const Json tpv = Json::parse(line, nullptr, false);
    if (!tpv.is_object() || tpv.value("class", "") != "TPV" || tpv.value("mode", 0) < 2) continue;
    const auto rounded = [&tpv](const char* name, double perUnit) {
      return " " + std::to_string(std::llround(tpv.value(name, 0.0) * perUnit));
    };
    int hours = 0;
    int minutes = 0;
    double seconds = 0;
    const std::string time = tpv.value("time", "");
    if (!time.empty()) {
      EXPECT_EQ(std::sscanf(time.c_str(), "%*10sT%d:%d:%lfZ", &hours, &minutes, &seconds), 3) << time;
    }
    const long ms = (hours * 60L + minutes) * 60'000 + std::lround(seconds * 1000);
    rows.push_back(std::to_string(ms) + rounded("lat", 600'000) + rounded("lon", 600'000) +
                   rounded("altMSL", 10) + rounded("speed", 36) + rounded("track", 10));
  }
  return rows;
}

// Up to the first reading of this time.
Lines UpTo(const std::string& ms, Lines rows) {
  const auto found =
      std::find_if(rows.begin(), rows.end(), [&ms](const std::string& row) { return row.starts_with(ms); });
  EXPECT_NE(found, rows.end()) << ms;
  rows.resize(std::min<std::size_t>(rows.size(), static_cast<std::size_t>(found - rows.begin()) + 1));
  return rows;
}

TEST(GpsdOption, RecordsWhatGpsdsOwnClientSees) {
  for (const char* program : {"gpsd", "gpsfake", "gpspipe"}) {
    if (!IsInstalled(program)) GTEST_SKIP() << program << " is not installed (gpsd, gpsd-clients)";
  }
  const TempDir directory;
  const std::string log = OwnTrack("town.nmea");
  const std::string port = std::to_string(Listener().Port());
  BenchRun bench;  // before its gpsd
  bench.Start({"--gpsd", "127.0.0.1:" + port});
  ASSERT_TRUE(bench.Said("MetadataMgr told full run")) << bench.Output();
  const Gpsfake gpsfake(directory, port, log);
  ASSERT_TRUE(Eventually([&] { return bench.Log("GpsHal").find("Follows the gpsd") != std::string::npos; }))
      << directory.Read("gpsfake");
  const Child gpspipe([&] {
    return ExecInto({"gpspipe", "-w", "127.0.0.1:" + port}, directory.Path("gpspipe"),
                    directory.Path("said"));
  });
  ASSERT_TRUE(Eventually([&] { return directory.Read("gpspipe").find("\"WATCH\"") != std::string::npos; }));

  const std::string text = TextOfFile(log);
  gpsfake.Play(static_cast<std::size_t>(std::count(text.begin(), text.end(), '$')));
  // The last but one second: gpsd may wait for what follows.
  EXPECT_TRUE(Eventually([&] { return directory.Read("gpspipe").find("T09:00:38") != std::string::npos; }));
  EXPECT_TRUE(Eventually(
      [&] { return TextOfFile(bench.Path("sent/GpsHal.log")).find(" 32438000 ") != std::string::npos; }));
  EXPECT_EQ(bench.Send({"quit"}), 0) << bench.SendOutput();
  EXPECT_EQ(bench.Finish(), 0) << bench.Output();

  const Lines seen = UpTo("32438000 ", FixesIn(directory.Read("gpspipe")));
  EXPECT_EQ(UpTo("32438000 ", Recorded(bench,
                                       "SELECT utc_time_ms||' '||latitude_e4min||' '||longitude_e4min||' '||"
                                       "altitude_dm||' '||speed_deci_kmh||' '||course_deci_deg "
                                       "FROM gps WHERE event=1 ORDER BY seq")),
            seen);
  EXPECT_GE(Recorded(bench, "SELECT seq FROM gps_state WHERE event=1 AND NOT valid").size(),
            3U);  // the tunnel
}

}  // namespace
