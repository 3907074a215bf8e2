// What the simulator makes of each number drawn, seen in the store's calls and the shared record.

#include <deque>
#include <functional>
#include <utility>

#include "SharedRecordTest.h"
#include "Simulator.h"

namespace {

using Texts = std::vector<std::string>;

// One call's numbers as the tables count them: from 1 on, but the bookmark's from 0 on. These
// change nothing.
struct Draws {
  int input = 30;
  int gps = 40;
  int microphone = 100;
  int bookmark = 0;
  int radar = 4;
};
constexpr int kFix = 1;
constexpr int kDrive = 81;
constexpr int kFixLost = 91;

// In place of the C library's functions. Each look at the clock takes a second.
std::deque<int> numbers;
std::time_t clockSecond;
bool seeded;
std::time_t Now(std::time_t* /*unused*/) {
  return ++clockSecond;
}
void Seed(unsigned int seed) {
  EXPECT_EQ(seed, static_cast<unsigned int>(clockSecond));
  seeded = true;
}
int Next() {
  EXPECT_TRUE(std::exchange(seeded, false));
  const int number = numbers.at(0);
  numbers.pop_front();
  return 2147483400 + number;  // a multiple of 30 and 100, near the end
}

class SimulatorTest : public SharedRecordTest {
 protected:
  SimulatorTest() { Restart(); }
  ~SimulatorTest() override { gSimulatorMode = gRadarOnlyMode = gShutdownRequested = false; }

  static void Restart() {
    gSimulator = {};
    gSimulator.random = {Now, Seed, Next};
  }

  // One call; what it reports, with "T" for the tick, which is the one of the call.
  Texts Simulate(const Draws& draws) {
    numbers = {draws.input - 1, draws.gps - 1, draws.microphone - 1, draws.bookmark, draws.radar - 1};
    StoreCalls().clear();
    const std::string tick = " " + std::to_string(gSystemTick);
    manager_.SimulateData();
    EXPECT_EQ(" " + std::to_string(gSystemTick - 1), tick) << "read once";
    EXPECT_EQ(numbers.size(), 0U);
    Texts calls = StoreCalls();
    for (std::string& line : calls) {
      if (line.find(tick) != std::string::npos) line.replace(line.find(tick), tick.size(), " T");
    }
    return calls;
  }
  // Of these reports those that begin so: what they say behind it, without flag and tick.
  static std::string Only(const std::string& begin, const Texts& reports) {
    std::string found;
    for (const std::string& line : reports) {
      if (!line.starts_with(begin)) continue;
      if (!found.empty()) found += ", ";
      found += line.substr(begin.size(), line.find(" event") - begin.size());
    }
    return found;
  }
  // What each number leads to; of numbers in a row that lead to the same only the first.
  static Texts Rows(int first, int last, const std::function<std::string(int)>& outcome) {
    Texts rows;
    std::string before;
    for (int number = first; number <= last; ++number) {
      Restart();
      const std::string text = outcome(number);
      if (number == first || text != before) rows.push_back(std::to_string(number) + ": " + text);
      before = text;
    }
    return rows;
  }

  // A 16-bit field of the shared record.
  int Short(unsigned int offset) const { return GetU16(record_ + offset); }
};

TEST_F(SimulatorTest, ReportsAllPartsInTheirOrder) {
  EXPECT_EQ(Simulate({}), (Texts{"StateData 53 event T", "StateData 57 event T", "StateData 55 event T",
                                 "StateData 61 event T", "StateData 63 event T", "StateData 69 event T",
                                 "GpsState 0 event", "ValidSpeed 1 0", "MicPresent 0 1 event T",
                                 "MicState 0 0 event T", "MicPresent 1 1 event T", "MicState 1 0 event T",
                                 "MicPresent 2 1 event T", "MicState 2 0 event T", "MicPresent 3 1 event T",
                                 "MicState 3 0 event T", "RadarState 1 0 event", "ValidSpeed 2 0"}));
  const Texts calls = Simulate({1, kFix, 1, 99, 61});
  ASSERT_EQ(calls.size(), 20U);
  EXPECT_EQ(Texts(calls.begin() + 6, calls.begin() + 11),
            (Texts{"GpsState 1 event", "Gps 10 20 0 15 25 0 0 event T", "Speed 1 100 event T 0",
                   "MicPresent 0 1 event T", "MicState 0 1 event T"}));
  EXPECT_EQ(Texts(calls.begin() + 17, calls.end()),
            (Texts{"Bookmark T", "RadarState 1 1 event", "Radar 1 1 1 1 0 event 0 0"}));
}

TEST_F(SimulatorTest, InputsAndMicrophonesToggleAndBookmarksAreRare) {
  const auto inputs = [this](int number) {
    const std::string once = Only("StateData ", Simulate({.input = number}));
    return once + " then " + Only("StateData ", Simulate({.input = number}));
  };
  const std::string off = "53, 57, 55, 61, 63, 69";
  EXPECT_EQ(Rows(1, 30, inputs),
            (Texts{"1: 52, 57, 55, 61, 63, 69 then " + off, "2: 53, 56, 55, 61, 63, 69 then " + off,
                   "3: 53, 57, 54, 61, 63, 69 then " + off, "4: 53, 57, 55, 60, 63, 69 then " + off,
                   "5: 53, 57, 55, 61, 62, 69 then " + off, "6: 53, 57, 55, 61, 63, 68 then " + off,
                   "7: " + off + " then " + off}));

  const auto microphones = [this](int number) {
    const std::string once = Only("MicState ", Simulate({.microphone = number}));
    return once + " then " + Only("MicState ", Simulate({.microphone = number}));
  };
  const std::string idle = "0 0, 1 0, 2 0, 3 0";
  EXPECT_EQ(Rows(1, 100, microphones),
            (Texts{"1: 0 1, 1 0, 2 0, 3 0 then " + idle, "5: 0 0, 1 1, 2 0, 3 0 then " + idle,
                   "10: 0 0, 1 0, 2 1, 3 0 then " + idle, "15: 0 0, 1 0, 2 0, 3 1 then " + idle,
                   "20: " + idle + " then " + idle}));

  EXPECT_EQ(Rows(0, 99, [this](int number) { return Only("Bookmark", Simulate({.bookmark = number})); }),
            (Texts{"0: ", "90:  T"}));
}

// From no fix and from a fix; then the place where there is a fix again, and before it the quality
// in the record.
TEST_F(SimulatorTest, GpsFollowsItsTable) {
  const auto outcome = [this](int number) {
    const std::string first = Only("GpsState ", Simulate({.gps = number}));
    (void)Simulate({.gps = kFix});
    const Texts second = Simulate({.gps = number});
    const int quality = Short(0x2E);
    return first + " or " + Only("GpsState ", second) + Only("ValidSpeed 1", second) + " at " +
           Only("Gps ", Simulate({.gps = kFix})) + " quality " + std::to_string(quality);
  };
  EXPECT_EQ(Rows(1, 100, outcome),
            (Texts{"1: 1 or 1 at 10 20 0 15 25 0 0 quality 1", "40: 0 or 1 at 10 20 0 15 25 0 0 quality 1",
                   "81: 0 or 1 at 10 20 20 15 25 20 0 quality 1",
                   "91: 0 or 0 0 at 10 20 20 15 25 20 0 quality 0"}));
}

// From inactive and from active: the state, in brackets target, fastest and locked speed; then
// status and patrol speed in the record.
TEST_F(SimulatorTest, RadarFollowsItsTable) {
  const auto state = [this](int number) {
    const Texts calls = Simulate({.radar = number});
    return Only("RadarState 1 ", calls) + Only("ValidSpeed 2", calls) + " (" + Only("Radar 1 ", calls) +
           ") " + std::to_string(Short(0x4C)) + " " + std::to_string(Short(0x4E));
  };
  const auto outcome = [&](int number) {
    for (const int before : {61, 4}) (void)Simulate({.radar = before});
    const std::string first = state(number);
    Restart();
    (void)Simulate({.radar = 61});
    return first + " or " + state(number);
  };
  EXPECT_EQ(Rows(1, 100, outcome),
            (Texts{"1: 0 0 () 128 1 or 0 0 () 128 1", "5: 1 (1 1 1 0) 8 1 or 1 (1 1 1 0) 8 1",
                   "21: 1 (1 1 2 0) 8 2 or 1 (1 1 2 0) 8 2", "25: 0 0 () 128 1 or 1 (1 1 2 0) 1 2",
                   "41: 0 0 () 128 1 or 1 (2 1 2 0) 1 2", "51: 0 0 () 128 1 or 1 (2 2 2 0) 1 2",
                   "61: 1 (2 2 2 0) 1 2 or 1 (2 2 2 0) 1 2"}));
}

// Where a row of numbers turns, and its last one.
Texts Turns(const std::vector<int>& row, int step) {
  Texts turns;
  for (std::size_t i = 1; i < row.size(); ++i) {
    EXPECT_EQ(std::abs(row[i] - row[i - 1]), step) << "at " << i;
    const bool turned = i + 1 == row.size() || row[i + 1] == row[i - 1];
    if (turned) turns.push_back(std::to_string(row[i]) + " after " + std::to_string(i));
  }
  return turns;
}

TEST_F(SimulatorTest, SpeedsRunUpAndDown) {
  (void)Simulate({.gps = kFix});
  std::vector<int> speed{100};
  std::vector<int> fastest{0};
  std::vector<int> patrol{0};
  for (int i = 0; i < 310; ++i) {
    speed.push_back(std::stoi(Only("Speed 1 ", Simulate({.gps = kDrive, .radar = 61}))));
    EXPECT_EQ(Short(0x28), speed.back());
    EXPECT_EQ(Short(0x40), speed.back());
    patrol.push_back(Short(0x4E));
    fastest.push_back(Short(0x52));
  }
  EXPECT_EQ(Turns(speed, 5), (Texts{"305 after 41", "0 after 102", "305 after 163", "0 after 224",
                                    "305 after 285", "180 after 310"}));
  const Texts turns{"151 after 151", "0 after 302", "8 after 310"};
  EXPECT_EQ(Turns(fastest, 1), turns);
  EXPECT_EQ(Turns(patrol, 1), turns);
}

TEST_F(SimulatorTest, PlacesCarry) {
  (void)Simulate({.gps = kFix});
  const std::pair<int, const char*> rows[] = {
      {5, "10 20 50 15 25 50 0"}, {6, "10 21 0 15 26 0 0"},    {209, "10 54 50 15 59 50 0"},
      {210, "10 55 0 16 0 0 0"},  {239, "10 59 50 16 4 50 0"}, {240, "11 0 0 16 5 0 0"},
      {600, "12 0 0 17 5 0 0"},
  };
  int moves = 0;
  for (const auto& [after, place] : rows) {
    Texts calls;
    for (; moves < after; ++moves) calls = Simulate({.gps = kDrive});
    EXPECT_EQ(Only("Gps ", calls), place) << after;
  }
}

TEST_F(SimulatorTest, WritesTheSharedRecord) {
  const auto record = [](const char* place, const char* reception, const char* radar) {
    return ToHex(FromHex(std::string("0100 eeee") + place + reception) + std::string(10, '\xee') +
                 FromHex(std::string(radar) + "eeee"));
  };
  const char* kReceived = "00000001 00000002 00000000 00000005 00000015";
  const std::string ee(72, 'e');
  (void)Simulate({});
  EXPECT_EQ(Record(), record(ee.c_str(), (std::string("0000 0005") + kReceived + "0000").c_str(),
                             "0080 eeee eeee eeee eeee"));

  for (const int radar : {41, 25}) (void)Simulate({.gps = kDrive, .radar = radar});
  (void)Simulate({.gps = kFix, .radar = 61});
  const char* place = "01eeeeee 4eeeeeee 0000000a 0014eeee 00000014 45eeeeee 0000000f 0014eeee 00000014";
  EXPECT_EQ(Record(), record(place, (std::string("006e 0005") + kReceived + "006e").c_str(),
                             "0001 0003 0002 0001 0003"));

  (void)Simulate({.gps = kFixLost, .radar = 25});
  EXPECT_EQ(Record(), record(place, "0000 0005 00000000 00000000 07ffffff 00000000 ffffffe0 0000",
                             "0001 0004 0002 0001 0004"));

  gSimulator.position->latitudeHemisphere = gSimulator.position->longitudeHemisphere = 2;
  (void)Simulate({.gps = kFix});
  EXPECT_EQ(record_[0x08], 'S');
  EXPECT_EQ(record_[0x18], 'W');
}

TEST_F(SimulatorTest, IsTheLastPartOfAPassWhereSwitchedOn) {
  setenv("FORCE_METADATA", "", 1);
  MetadataMgr filling;
  unsetenv("FORCE_METADATA");
  const auto pass = [&](std::initializer_list<int> drawn, bool fills = false) {
    numbers = drawn;
    StoreCalls().clear();
    gSystemTick = 800;
    (fills ? filling : manager_).PeriodicProcessing();
    EXPECT_TRUE(numbers.empty());
    return StoreCalls();
  };
  gRadarOnlyMode = true;  // not enough by itself
  EXPECT_EQ(pass({}), Texts{"TimerTick 800"});
  gSimulatorMode = true;
  EXPECT_EQ(pass({60}), (Texts{"TimerTick 800", "RadarState 1 1 event", "Radar 1 1 1 1 0 event 0 0"}));
  EXPECT_EQ(pass({3}, true), (Texts{"TimerTick 800", "StringData 32 Test string for filler 801",
                                    "RadarState 1 0 event", "ValidSpeed 2 0"}));
  EXPECT_FALSE(gSimulator.position);
  gRadarOnlyMode = false;
  EXPECT_EQ(pass({29, 39, 99, 0, 3}).size(), 19U);
  gShutdownRequested = true;
  EXPECT_EQ(pass({}), Texts{});
}

TEST_F(SimulatorTest, NeedsNoSharedRecord) {
  MetadataMgr manager;
  StoreCalls().clear();
  numbers = {29, kFix - 1, 99, 0, 60, 29, kFixLost - 1, 99, 0, 60};
  manager.SimulateData();
  manager.SimulateData();
  EXPECT_EQ(StoreCalls().size(), 37U);
}

// The C library's own generator.
TEST(RandomSource, RepeatsItselfWithinASecond) {
  RandomSource source;
  source.now = [](std::time_t* /*unused*/) { return std::time_t{1700000000}; };
  std::srand(1700000000);
  const int number = std::rand();
  for (const int limit : {100, 30, 100}) EXPECT_EQ(source.Draw(limit), number % limit);
}

}  // namespace
