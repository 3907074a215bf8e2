// A log that gpsd's own test harness plays to gpsd: what is recorded of gpsd's reports is what the log says.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "BenchRun.h"
#include "NmeaLog.h"
#include "Recorded.h"
#include "Tracks.h"
#include "support/Eventually.h"

namespace {

// A port of this machine that nobody listens at.
std::string FreePort() {
  const int fd = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  socklen_t size = sizeof address;
  EXPECT_EQ(bind(fd, reinterpret_cast<sockaddr*>(&address), size), 0);
  EXPECT_EQ(getsockname(fd, reinterpret_cast<sockaddr*>(&address), &size), 0);
  close(fd);
  return std::to_string(ntohs(address.sin_port));
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

// Also when gpsd goes and comes again.
TEST(GpsdOption, RecordsWhatGpsdTells) {
  for (const char* program : {"gpsd", "gpsfake"}) {
    if (!IsInstalled(program)) GTEST_SKIP() << program << " is not installed (gpsd, gpsd-clients)";
  }
  const TempDir directory;
  const std::string path = OwnTrack("town.nmea");
  const std::string port = FreePort();
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
  bench.Start({"--gpsd", "127.0.0.1:" + port});
  ASSERT_TRUE(bench.Said("MetadataMgr told full run")) << bench.Output();
  const auto ends = [&] { return Count(TextOfFile(bench.Path("sent/GpsHal.log")), " 32438000 "); };
  for (std::size_t run = 1; run <= 2; ++run) {
    const std::size_t endsBefore = ends();
    {
      const Gpsfake gpsfake(directory, port, path);
      ASSERT_TRUE(Eventually([&] { return Count(bench.Log("GpsHal"), "Follows the gpsd") == run; }))
          << directory.Read("gpsfake");
      gpsfake.Play(Count(TextOfFile(path), "$"));
      EXPECT_TRUE(Eventually([&] { return ends() > endsBefore; }));
    }
    EXPECT_TRUE(Eventually([&] { return Count(bench.Log("GpsHal"), "is gone") == run; }));
  }
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
