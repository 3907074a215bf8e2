// Reading gpsd's reports, and following a gpsd that starts and stops.
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "GpsItem.h"
#include "GpsdReceiver.h"
#include "Listener.h"
#include "Tracks.h"
#include "support/Eventually.h"

namespace bench {

namespace {

const std::string kSky =
    R"({"class":"SKY","satellites":[{"PRN":7,"ss":41.4,"used":true},{"PRN":8,"ss":0,"used":false},3,{"ss":"x"}]})";
const std::string kFix =
    R"({"class":"TPV","mode":3,"status":2,"time":"2026-06-10T09:00:01.250Z","lat":-33.99999999,"lon":-60.00000001,)"
    R"("altHAE":99.0,"altMSL":34.26,"speed":10.5,"track":359.96})";
const std::string kFixRow = "-20400000 -36000000 343 378 204 0 2 3 1 3 41 20260610 32401250 1";

struct Report {
  const char* name;
  std::string line;
  std::string row;
};
const Report kReports[] = {
    {"Fix", kFix, kFixRow},
    {"PlainFix", R"({"class":"TPV","mode":2,"lat":1.5,"lon":2})",
     "900000 1200000 134217727 0 0 0 1 2 1 3 41 0 0 1"},
    {"OlderAltitude", R"({"class":"TPV","mode":3,"lat":0,"lon":0,"alt":-1.04})",
     "0 0 -10 0 0 0 1 3 1 3 41 0 0 1"},
    {"RtkFloat", R"({"class":"TPV","mode":3,"status":4,"lat":0,"lon":0,"speed":1e300})",
     "0 0 134217727 65535 65535 0 5 3 1 3 41 0 0 1"},
    {"NoFix", R"({"class":"TPV","mode":1,"lat":1.5,"lon":2})", "no fix"},
    {"SurveyedIn", R"({"class":"TPV","mode":3,"status":7,"lat":1.5,"lon":2})", "no fix"},
    {"NoPlace", R"({"class":"TPV","mode":3,"lat":1.5})", "no fix"},
    {"BeyondThePole", R"({"class":"TPV","mode":3,"lat":90.1,"lon":2})", "no fix"},
    {"TimeOfText", R"({"class":"TPV","mode":2,"lat":1.5,"lon":2,"time":"2026-06-10Tnoon, or so Z"})",
     "900000 1200000 134217727 0 0 0 1 2 1 3 41 0 0 1"},
    {"NoObject", "[1,2", "nothing"},
    {"Garbage", "\xff\xfe{{{{", "nothing"},
    {"Deep", std::string(60000, '['), "nothing"},
};

TEST(Gpsd, ReportsAreTakenAsTheyAre) {
  for (const Report& report : kReports) {
    GpsdReports reports;
    GpsStatusItem item = NoFix();
    EXPECT_EQ(reports.Take(kSky, item), GpsdReport::kOther);
    const bool reading = reports.Take(report.line, item) == GpsdReport::kReading;
    EXPECT_EQ(reading ? RowOf(item) : "nothing", report.row) << report.name;
  }
}

// Plays a gpsd.
class FakeGpsd {
 public:
  ~FakeGpsd() { Stop(); }

  std::string Peer() const { return std::to_string(port_) + " 127.0.0.1"; }
  std::string Address() const { return "127.0.0.1:" + std::to_string(port_); }
  void Stop() {
    listener_.reset();
    if (client_ >= 0) close(client_);
    client_ = -1;
    asked_.clear();
  }
  void StartAgain() { listener_.emplace(port_); }
  bool HasClient() {
    if (client_ < 0) client_ = listener_->Accept();
    char request[256] = {};
    if (client_ >= 0 && recv(client_, request, sizeof request - 1, 0) > 0) asked_ += request;
    return asked_ == "?WATCH={\"enable\":true,\"json\":true};\n";
  }
  void Report(const std::string& text) {
    EXPECT_EQ(send(client_, text.data(), text.size(), 0), ssize_t(text.size()));
  }

 private:
  std::optional<Listener> listener_{std::in_place};
  const in_port_t port_ = listener_->Port();
  int client_ = -1;
  std::string asked_;
};

TEST(Gpsd, IsFollowedAgainWhenItComesBackAndItsFixIsLostMeanwhile) {
  FakeGpsd gpsd;
  std::vector<std::string> said;
  GpsdReceiver receiver(gpsd.Peer(), [&said](const std::string& text) { said.push_back(text); });
  GpsStatusItem item = NoFix();
  const auto next = [&] {
    return Eventually([&] { return receiver.Next(0, item); }) ? RowOf(item) : "nothing";
  };
  const auto follows = [&] { return Eventually([&] { return receiver.Next(0, item) || gpsd.HasClient(); }); };
  ASSERT_TRUE(follows());
  EXPECT_FALSE(receiver.Next(0, item));
  gpsd.Report(kSky + "\r\n" + kFix.substr(0, 50));
  EXPECT_FALSE(receiver.Next(0, item));
  gpsd.Report(kFix.substr(50) + "\n" + kFix + "\n");
  EXPECT_EQ(next(), kFixRow);
  EXPECT_EQ(next(), kFixRow);
  EXPECT_FALSE(receiver.Next(0, item));

  gpsd.Stop();
  EXPECT_EQ(next(), "no fix");
  EXPECT_EQ(PlaceOf(item), "-20400000 -36000000");
  EXPECT_FALSE(receiver.Next(0, item));
  gpsd.StartAgain();
  ASSERT_TRUE(follows());
  gpsd.Report(kFix + "\n");
  EXPECT_EQ(next(), kFixRow);

  gpsd.Report(std::string(100'000, 'x'));  // longer than any line may be
  gpsd.Report("x\n{\"class\":\"WATCH\"}\n" + kFix + "\n");
  EXPECT_EQ(next(), kFixRow);
  ASSERT_EQ(said.size(), 2U);
  EXPECT_EQ(said[0], "the gpsd at " + gpsd.Address() + " is gone");
  EXPECT_EQ(said[1], "follows the gpsd at " + gpsd.Address());
}

TEST(Gpsd, SpeedToldLessOftenThanThePlaceIsRepeatedWhileTheFixLasts) {
  const std::string place = R"({"class":"TPV","mode":2,"lat":1.5,"lon":2})";
  GpsdReports reports;
  GpsStatusItem item = NoFix();
  (void)reports.Take(kFix, item);
  for (int i = 0; i < 2; ++i) {
    (void)reports.Take(place, item);
    EXPECT_EQ(item.speedDeciKmh, 378);
    EXPECT_EQ(item.courseDeciDegrees, 0);
  }
  (void)reports.Take(R"({"class":"TPV","mode":1})", item);
  (void)reports.Take(place, item);
  EXPECT_EQ(item.speedDeciKmh, 0);
}

}  // namespace

}  // namespace bench
