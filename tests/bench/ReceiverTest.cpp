// Receivers that are followed, through all processes into the file: logs that are played, and gpsd, to which
// its own test harness plays a log.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <functional>

#include "BenchRun.h"
#include "Listener.h"
#include "NmeaLog.h"
#include "Tracks.h"
#include "support/Connection.h"
#include "support/Eventually.h"
#include "support/LogText.h"

namespace bench {

namespace {

using testing::HasSubstr;

// The rows of a query of all that a bench's MetadataMgr recorded, file by file.
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
  EXPECT_THAT(bench.Output(), HasSubstr("FAILED: gps rate 5: GpsHal follows a receiver"));
  EXPECT_THAT(bench.Output(), HasSubstr("problems: 1,"));
  const Lines times = recorded();
  EXPECT_LE(times.size(), 30U);
  EXPECT_EQ(std::adjacent_find(times.begin(), times.end(), std::greater_equal<>()), times.end());
  EXPECT_EQ(times.back(), kLast);
}

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

TEST(GpsdOption, RecordsWhatGpsdTells) {
  for (const char* program : {"gpsd", "gpsfake", "gpspipe"}) {
    if (!IsInstalled(program)) GTEST_SKIP() << program << " is not installed (gpsd, gpsd-clients)";
  }
  const TempDir directory;
  const std::string path = OwnTrack("town.nmea");
  const std::string port = std::to_string(Listener().Port());
  // The readings until the last but one second: gpsd may wait for what follows.
  Lines expected;
  NmeaLog log;
  ASSERT_TRUE(ReadNmea(path, log));
  log.readings.pop_back();
  for (const NmeaReading& reading : log.readings) {
    const GpsStatusItem& fix = reading.item;
    if (fix.HasFix()) expected.push_back(std::to_string(fix.utcTimeOfDayMs) + " " + PlaceOf(fix));
  }
  BenchRun bench;
  bench.Start({"--gpsd", "127.0.0.1:" + port});  // before there is a gpsd
  ASSERT_TRUE(bench.Said("MetadataMgr told full run")) << bench.Output();
  EXPECT_TRUE(bench.Said("GpsHal: no gpsd answers at 127.0.0.1:" + port + " yet")) << bench.Output();
  const Gpsfake gpsfake(directory, port, path);
  ASSERT_TRUE(bench.Said("GpsHal: follows the gpsd at 127.0.0.1:" + port)) << directory.Read("gpsfake");
  const Child gpspipe([&] {
    return ExecInto({"gpspipe", "-w", "127.0.0.1:" + port}, directory.Path("gpspipe"),
                    directory.Path("said"));
  });
  ASSERT_TRUE(Eventually([&] { return Count(directory.Read("gpspipe"), "\"activated\"") > 0; }))
      << "gpsd listens to its receiver";
  gpsfake.Play(Count(TextOfFile(path), "$"));
  EXPECT_TRUE(Eventually([&] { return Count(TextOfFile(bench.Path("sent/GpsHal.log")), " 32438000 ") > 0; }));
  EXPECT_EQ(bench.Send({"quit"}), 0) << bench.SendOutput();
  EXPECT_EQ(bench.Finish(), 0) << bench.Output();
  // gpsd says much twice, and the first place before it knows the time.
  EXPECT_EQ(
      Recorded(bench,
               "SELECT utc_time_ms||' '||latitude_e4min||' '||longitude_e4min FROM gps WHERE event=1 AND "
               "utc_time_ms BETWEEN 1 AND 32438000 GROUP BY 1 ORDER BY min(seq)"),
      expected);
  EXPECT_GE(Recorded(bench, "SELECT seq FROM gps_state WHERE event=1 AND NOT valid").size(),
            3U);  // the tunnel
}

}  // namespace

}  // namespace bench
