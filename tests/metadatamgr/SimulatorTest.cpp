// The effect of each number that the simulator draws, and the reports of one pass.

#include <algorithm>
#include <sstream>

#include "MetadataMgr.h"
#include "ProcessState.h"
#include "Recorder.h"
#include "Simulator.h"
#include "sharedmem/MetadataSharedMem.h"
#include "support/Hex.h"
#include "system/BigEndian.h"

namespace {

// The result of every draw, counted from 1 as in the tables.
int drawn = 1;

Simulator Fresh() {
  Simulator simulator;
  simulator.random = {[](std::time_t*) { return std::time_t{}; }, [](unsigned int) {},
                      [] { return 2147483400 + drawn - 1; }};  // a multiple of 30 and 100, near the end
  return simulator;
}

// The outcome of each number; of successive numbers with the same outcome only the first.
template <typename Outcome>
Lines Rows(int last, Outcome outcome) {
  Lines rows;
  std::string before;
  for (int number = 1; number <= last; ++number) {
    drawn = number;
    Simulator simulator = Fresh();
    const std::string text = outcome(simulator);
    if (text != before) rows.push_back(std::to_string(number) + ": " + text);
    before = text;
  }
  return rows;
}

template <std::size_t N>
std::string Which(const std::array<bool, N>& flags) {
  std::string text;
  for (const bool on : flags) text += on ? '1' : '0';
  return text;
}

std::string Place(const Simulator& simulator) {
  const GpsStatusItem& p = *simulator.position;
  std::ostringstream text;
  text << p.latitudeDegrees << ' ' << p.latitudeMinutes << ' ' << p.latitudeMinuteFraction << ' '
       << p.longitudeDegrees << ' ' << p.longitudeMinutes << ' ' << p.longitudeMinuteFraction;
  return text.str();
}

// The flags after one step and after two steps with the same number.
template <typename Flags>
auto Twice(void (Simulator::*step)(), Flags Simulator::*flags) {
  return [=](Simulator& simulator) {
    (simulator.*step)();
    const std::string once = Which(simulator.*flags);
    (simulator.*step)();
    return once + " " + Which(simulator.*flags);
  };
}

TEST(Simulator, InputsAndMicrophonesToggleAndBookmarksAreRare) {
  EXPECT_EQ(Rows(30, Twice(&Simulator::StepInputs, &Simulator::inputs)),
            (Lines{"1: 100000 000000", "2: 010000 000000", "3: 001000 000000", "4: 000100 000000",
                   "5: 000010 000000", "6: 000001 000000", "7: 000000 000000"}));
  EXPECT_EQ(Rows(100, Twice(&Simulator::StepMicrophones, &Simulator::microphonesActive)),
            (Lines{"1: 1000 0000", "5: 0100 0000", "10: 0010 0000", "15: 0001 0000", "20: 0000 0000"}));
  const auto bookmark = [](Simulator& simulator) {
    return std::string(simulator.DrawBookmark() ? "yes" : "no");
  };
  EXPECT_EQ(Rows(100, bookmark), (Lines{"1: no", "91: yes"}));
}

// From no fix and from a fix.
TEST(Simulator, GpsFollowsItsTable) {
  const auto outcome = [](Simulator& simulator) {
    alignas(4) unsigned char record[MetadataSharedMem::kSize] = {};
    std::string text;
    for (const bool fix : {false, true}) {
      simulator.gpsFix = fix;
      simulator.StepGps(record);
      text += (simulator.gpsFix ? "fix " : "none ") + Place(simulator) + ", ";
    }
    return text + std::to_string(simulator.speed.value) + " km/h, quality " +
           std::to_string(GetU32(record + 0x2C));
  };
  EXPECT_EQ(Rows(100, outcome),
            (Lines{"1: fix 10 20 0 15 25 0, fix 10 20 0 15 25 0, 100 km/h, quality 1",
                   "40: none 10 20 0 15 25 0, fix 10 20 0 15 25 0, 100 km/h, quality 1",
                   "81: none 10 20 10 15 25 10, fix 10 20 20 15 25 20, 110 km/h, quality 1",
                   "91: none 10 20 10 15 25 10, none 10 20 20 15 25 20, 110 km/h, quality 0"}));
}

// From inactive and from active: whether it is so then, the four speeds, and the status in the record.
TEST(Simulator, RadarFollowsItsTable) {
  const auto outcome = [](Simulator& simulator) {
    alignas(4) unsigned char record[MetadataSharedMem::kSize] = {};
    std::string text;
    for (const bool active : {false, true}) {
      simulator.radarActive = active;
      simulator.StepRadar(record);
      text += simulator.radarActive ? "active " : "none ";
    }
    for (const Ramp& speed : simulator.radarSpeeds) text += std::to_string(speed.value);
    return text + ", status " + std::to_string(GetU16(record + 0x4C));
  };
  EXPECT_EQ(Rows(100, outcome), (Lines{"1: none none 0000, status 128", "5: active active 0000, status 8",
                                       "21: active active 0202, status 8", "25: none active 0202, status 0",
                                       "41: none active 0222, status 0", "51: none active 2222, status 0",
                                       "61: active active 2222, status 1"}));
}

// Where a ramp turns in its first 310 moves.
Lines Turns(Ramp ramp) {
  Lines turns;
  bool rising = true;
  for (int i = 1; i <= 310; ++i) {
    const int before = ramp.value;
    ramp.Move();
    EXPECT_EQ(std::abs(ramp.value - before), ramp.step);
    if ((ramp.value > before) == rising) continue;
    rising = !rising;
    turns.push_back(std::to_string(before) + " after " + std::to_string(i - 1));
  }
  return turns;
}

TEST(Simulator, SpeedsRunUpAndDown) {
  const Simulator simulator;
  EXPECT_EQ(Turns(simulator.speed),
            (Lines{"305 after 41", "0 after 102", "305 after 163", "0 after 224", "305 after 285"}));
  for (const Ramp& speed : simulator.radarSpeeds) {
    EXPECT_EQ(Turns(speed), (Lines{"151 after 151", "0 after 302"}));
  }
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

// The C library's own generator.
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
