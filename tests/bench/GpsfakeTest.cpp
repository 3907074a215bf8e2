// A log that gpsd's own test harness plays to gpsd: what the bench records of it is what gpsd's own client
// saw.
#include <arpa/inet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <sstream>

#include "BenchRun.h"
#include "Recorded.h"
#include "Tracks.h"
#include "support/Eventually.h"

namespace {

using Json = nlohmann::json;

// The path of an installed program; empty where there is none.
std::string Installed(const std::string& program) {
  for (const char* directory : {"/usr/bin/", "/usr/sbin/"}) {
    if (access((directory + program).c_str(), X_OK) == 0) return directory + program;
  }
  return {};
}

int Exec(int in, const std::string& out, const std::vector<std::string>& arguments) {
  std::vector<char*> argv;
  argv.reserve(arguments.size() + 1);
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  const int file = open(out.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
  if (dup2(in, STDIN_FILENO) >= 0 && dup2(file, STDOUT_FILENO) >= 0 && dup2(file, STDERR_FILENO) >= 0) {
    (void)execv(argv[0], argv.data());
  }
  return 127;
}

std::string FreePort() {
  const int fd = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  EXPECT_EQ(bind(fd, reinterpret_cast<sockaddr*>(&address), size), 0);
  getsockname(fd, reinterpret_cast<sockaddr*>(&address), &size);
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
      return Exec(fds[0], out, {Installed("gpsfake"), "-1", "-i", "-q", "-P", port, log});
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
Rows FixesIn(const std::string& reports) {
  Rows rows;
  std::istringstream lines(reports);
  for (std::string line; std::getline(lines, line);) {
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
Rows UpTo(const std::string& ms, Rows rows) {
  const auto found =
      std::find_if(rows.begin(), rows.end(), [&ms](const std::string& row) { return row.starts_with(ms); });
  EXPECT_NE(found, rows.end()) << ms;
  if (found != rows.end()) rows.erase(found + 1, rows.end());
  return rows;
}

TEST(GpsdOption, RecordsWhatGpsdsOwnClientSees) {
  for (const char* program : {"gpsd", "gpsfake", "gpspipe"}) {
    if (Installed(program).empty()) GTEST_SKIP() << program << " is not installed (gpsd, gpsd-clients)";
  }
  const TempDir directory;
  const std::string log = OwnTrack("town.nmea");
  const std::string port = FreePort();
  BenchRun bench;  // before its gpsd
  bench.Start({"--gpsd", "127.0.0.1:" + port});
  ASSERT_TRUE(bench.Said("MetadataMgr told full run")) << bench.Output();
  const Gpsfake gpsfake(directory, port, log);
  ASSERT_TRUE(Eventually([&] { return bench.Log("GpsHal").find("Follows the gpsd") != std::string::npos; }))
      << directory.Read("gpsfake");
  const Child gpspipe([&] {
    return Exec(open("/dev/null", O_RDONLY), directory.Path("gpspipe"),
                {Installed("gpspipe"), "-w", "127.0.0.1:" + port});
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

  const Rows seen = UpTo("32438000 ", FixesIn(directory.Read("gpspipe")));
  EXPECT_EQ(UpTo("32438000 ", Recorded(bench,
                                       "SELECT utc_time_ms||' '||latitude_e4min||' '||longitude_e4min||' '||"
                                       "altitude_dm||' '||speed_deci_kmh||' '||course_deci_deg "
                                       "FROM gps WHERE event=1 ORDER BY seq")),
            seen);
  EXPECT_GE(Recorded(bench, "SELECT seq FROM gps_state WHERE event=1 AND NOT valid").size(),
            3U);  // the tunnel
}

}  // namespace
