// The positions that the simulator draws, and the reports of one pass.
#include <algorithm>
#include <sstream>

#include "MetadataMgr.h"
#include "ProcessState.h"
#include "Recorder.h"
#include "Simulator.h"
#include "sharedmem/MetadataSharedMem.h"
#include "support/Hex.h"

namespace {

// Every draw has this result, counted from 1.
int drawn = 1;

Simulator Fresh() {
  Simulator simulator;
  simulator.random = {[](std::time_t*) { return std::time_t{}; }, [](unsigned int) {},
                      [] { return 2147483400 + drawn - 1; }};  // a multiple of 30 and 100, near the end
  return simulator;
}

std::string Place(const Simulator& simulator) {
  const GpsStatusItem& p = *simulator.position;
  std::ostringstream text;
  text << p.latitudeDegrees << ' ' << p.latitudeMinutes << ' ' << p.latitudeMinuteFraction << ' '
       << p.longitudeDegrees << ' ' << p.longitudeMinutes << ' ' << p.longitudeMinuteFraction;
  return text.str();
}

TEST(Simulator, PlacesCarry) {
  drawn = 81;
  Simulator simulator = Fresh();
  const std::pair<int, const char*> rows[] = {
      {5, "10 20 50 15 25 50"}, {6, "10 21 0 15 26 0"}, {210, "10 55 0 16 0 0"}, {240, "11 0 0 16 5 0"}};
  int moves = 0;
  for (const auto& [after, place] : rows) {
    for (; moves < after; ++moves) simulator.StepGps(nullptr);
    EXPECT_EQ(Place(simulator), place) << after;
  }
}

// Uses the generator of the C library.
TEST(RandomSource, RepeatsItselfWithinASecond) {
  RandomSource source;
  source.now = [](std::time_t*) { return std::time_t{1700000000}; };
  std::srand(1700000000);
  const int number = std::rand();
  for (const int limit : {100, 30, 100}) EXPECT_EQ(source.Draw(limit), number % limit);
}

// ---- A pass

class SimulateTest : public testing::Test {
 protected:
  SimulateTest() {
    setenv("METADATA_SHM", files_.environment["METADATA_SHM"].c_str(), 1);
    gMetadataDir = files_.Path("disk/metadata");
    gMetadataPath = gMetadataDir + "/metadata";
    gSimulator = Fresh();
    for (int i = 0; i < 4; ++i) gSimulator.radarSpeeds[static_cast<std::size_t>(i)].value = 10 * (i + 1);
    manager_ = std::make_unique<MetadataMgr>();
    EXPECT_TRUE(manager_->PreInit(ipc_));
  }
  ~SimulateTest() override { unsetenv("METADATA_SHM"); }

  void Simulate(int number) {
    drawn = number;
    manager_->SimulateData();
  }

  Recorder files_;
  LinxIpc ipc_{"MetadataMgr"};
  std::unique_ptr<MetadataMgr> manager_;
};

TEST_F(SimulateTest, ReportsAllPartsInTheirOrder) {
  Simulate(1);    // lights, fix, microphone 0
  Simulate(100);  // fix lost, bookmark, radar
  manager_ = nullptr;
  const std::string inputs = "lights on|brakes off|siren off|aux off|doorOpen closed|ignition off|";
  const std::string microphones =
      "microphone 0 present|microphone 0 active|microphone 1 present|microphone 1 not active|"
      "microphone 2 present|microphone 2 not active|microphone 3 present|microphone 3 not active|";
  std::string reports;
  for (const std::string& line : files_.Records("event='event' AND source<>'clock'"))
    reports += line.substr(0, line.find(" event")) + "|";
  EXPECT_EQ(reports,
            inputs + "gps fix|gps 10.333333 15.416667 0.0 m, 0.0 km/h, course 0.0, no fix, 0 satellites|" +
                "speed gps 100|" + microphones + "radar 1 no reading|speed radar not valid|" + inputs +
                "gps no fix|speed gps not valid|" + microphones +
                "bookmark set|radar 1 reading|radar 1 31 11 41|");
  EXPECT_EQ(files_.Records("sender_tick<>0 AND abs(sender_tick-tick)>10000"), Lines{});
}

TEST_F(SimulateTest, WritesTheSharedRecord) {
  MetadataSharedMem view;
  unsigned char* record = view.MetadataItems(false);
  std::fill_n(record + 2, 86, static_cast<unsigned char>(0xEE));
  const auto expected = [](const char* place, const char* reception, const char* radar) {
    return FromHex(std::string("0100 eeee") + place + reception) + std::string(10, '\xee') +
           FromHex(std::string(radar) + "eeee");
  };
  Simulate(1);
  const char* place = "01eeeeee 4eeeeeee 0000000a 0014eeee 00000000 45eeeeee 0000000f 0000eeee 00000000";
  EXPECT_EQ(files_.SharedRecord(),
            expected(place, "0064 0005 00000001 00000002 00000000 00000005 00000015 0064",
                     "0080 eeee eeee eeee eeee"));
  Simulate(100);
  EXPECT_EQ(files_.SharedRecord(),
            expected(place, "0000 0005 00000000 00000000 07ffffff 00000000 ffffffe0 0000",
                     "0001 0015 001f 000b 0029"));
  gSimulator.position->latitudeHemisphere = gSimulator.position->longitudeHemisphere = 2;
  Simulate(1);
  place = "01eeeeee 53eeeeee 0000000a 0014eeee 0000000a 57eeeeee 0000000f 000aeeee 0000000a";
  EXPECT_EQ(files_.SharedRecord(),
            expected(place, "0069 0005 00000001 00000002 00000000 00000005 00000015 0069",
                     "0080 0015 001f 000b 0029"));
}

}  // namespace
