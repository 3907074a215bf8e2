// Receivers that are followed, through all processes into the file.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "BenchRun.h"
#include "NmeaLog.h"
#include "Recorded.h"
#include "Tracks.h"
#include "support/Eventually.h"

namespace {

using testing::HasSubstr;

// What was recorded of each reading, in order; the first is what was found at the start.
Lines Track(const BenchRun& bench) {
  return Recorded(
      bench,
      "SELECT row FROM (SELECT latitude_e4min||' '||longitude_e4min||' '||altitude_dm||' "
      "'||speed_deci_kmh||' '||"
      "speed_deci_knots||' '||course_deci_deg||' '||quality||' '||fix_dimensions||' '||"
      "satellites_used||' '||satellites_in_view||' '||signal_db||' '||utc_date||' '||utc_time_ms||' '||"
      "valid AS row, seq FROM gps WHERE event=1 UNION ALL "
      "SELECT 'no fix', seq FROM gps_state WHERE event<2 AND NOT valid) ORDER BY seq");
}

TEST(NmeaOption, RecordsALogAsTheReceiverGaveIt) {
  for (const std::string& path : {OwnTrack("harbour.nmea"), OwnTrack("town.nmea"), RealTrack("nmea-rtk.log"),
                                  RealTrack("sirfstarv-nmea.log"), RealTrack("telit-he910.log")}) {
    NmeaLog log;
    if (!ReadNmea(path, log)) {
      EXPECT_FALSE(path.starts_with(OWN_TRACKS)) << path;
      continue;
    }
    Lines expected{"no fix"};
    for (const NmeaReading& reading : log.readings) expected.push_back(RowOf(reading.item));
    BenchRun bench;
    ASSERT_EQ(bench.Run({"--nmea", path, "--speed", "100"}), 0) << bench.Output();
    EXPECT_THAT(bench.Output(), HasSubstr("Log " + path + ": " + log.Summary()));
    EXPECT_THAT(bench.Output(), HasSubstr("quit (GpsHal): shutting down"));
    EXPECT_EQ(Track(bench), expected);
  }
}

TEST(NmeaOption, GoesWithADriveAndARestartOfTheGpsProcess) {
  BenchRun bench;
  bench.Drive("0 gps rate 5\n5 kill GpsHal\n20 start GpsHal\n");
  bench.Start({"--nmea", OwnTrack("town.nmea"), "--speed", "20"});
  const std::string kLast = "32439000";
  ASSERT_TRUE(Eventually([&] {
    return TextOfFile(bench.Path("sent/GpsHal.log")).find(" " + kLast + " ") != std::string::npos;
  })) << bench.Output();
  const auto recorded = [&] {
    return Recorded(bench, "SELECT utc_time_ms FROM gps WHERE event=1 ORDER BY seq");
  };
  EXPECT_TRUE(Eventually([&] { return !recorded().empty() && recorded().back() == kLast; }));
  EXPECT_EQ(bench.Send({"quit"}), 0) << bench.SendOutput();
  EXPECT_EQ(bench.Finish(), 1);  // the first line
  EXPECT_THAT(bench.Output(), HasSubstr("FAILED: gps rate 5: a receiver is followed"));
  EXPECT_THAT(bench.Output(), HasSubstr("problems: 1,"));
  const Lines times = recorded();
  EXPECT_LE(times.size(), 30U);
  EXPECT_EQ(std::adjacent_find(times.begin(), times.end(), std::greater_equal<>()), times.end());
  EXPECT_EQ(times.back(), kLast);
}

}  // namespace
