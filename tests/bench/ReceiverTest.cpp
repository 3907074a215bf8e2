// Plays logs of receivers through all processes into the recording.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "BenchRun.h"
#include "NmeaLog.h"
#include "Tracks.h"
#include "support/Connection.h"
#include "support/LogText.h"

namespace bench {

namespace {

using testing::HasSubstr;

// The rows of a query in all recordings of a bench, file by file.
Lines Recorded(const BenchRun& bench, const std::string& sql) {
  std::vector<std::string> paths;
  for (const auto& entry : std::filesystem::directory_iterator(bench.Path("mnt/metadata"))) {
    if (entry.path().extension() == ".db") paths.push_back(entry.path());
  }
  std::sort(paths.begin(), paths.end());
  std::string rows;
  for (const std::string& path : paths) rows += Connection(path).Rows(sql);
  return LinesOf(rows);
}

// The recorded readings, in order. The first row is the value at the start.
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
  for (const std::string& path : {OwnTrack("harbour.nmea"), OwnTrack("town.nmea")}) {
    NmeaLog log;
    ASSERT_TRUE(ReadNmea(path, log));
    Lines expected{"no fix"};
    for (const NmeaReading& reading : log.readings) expected.push_back(RowOf(reading.item));
    BenchRun bench;
    ASSERT_EQ(bench.Run({"--nmea", path, "--speed", "100"}), 0) << bench.Output();
    EXPECT_THAT(bench.Output(), HasSubstr("Log " + path + ": " + log.Summary()));
    EXPECT_THAT(bench.Output(), HasSubstr("quit (GpsHal): shutting down"));
    EXPECT_EQ(Track(bench), expected);
  }
}

}  // namespace

}  // namespace bench
