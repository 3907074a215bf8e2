#include <algorithm>
#include <csignal>
#include <set>
#include <sstream>

#include "Car.h"
#include "Documents.h"
#include "support/Eventually.h"
#include "support/Hex.h"
#include "system/Servers.h"

namespace {

std::string Text(const std::string& text) {
  return "00" + ToHex(std::string(1, static_cast<char>(text.size()))) + ToHex(text);
}

// Expands repetitions: "00*9" is nine zero bytes.
std::string Repeated(const std::string& payload) {
  std::string hex;
  std::istringstream words(payload);
  for (std::string word; words >> word;) {
    const std::size_t star = word.find('*');
    const int times = star == std::string::npos ? 1 : std::stoi(word.substr(star + 1));
    for (int i = 0; i < times; ++i) hex += word.substr(0, star);
  }
  return hex;
}

// A message of docs/events.md, with its rows and log lines.
struct Example {
  std::string message;
  Lines rows = {};
  Lines log = {};

  unsigned int Type() const { return static_cast<unsigned int>(std::stoul(message)); }
  std::string Payload() const { return Repeated(message.substr(message.find(':') + 1)); }
};

std::vector<Example> Examples() {
  std::vector<Example> examples;
  for (const std::string& line : BlocksOf(EVENTS_DOCUMENT, "event")) {
    if (!line.starts_with("  ")) {
      examples.push_back({line});
    } else if (line.starts_with("  log ")) {
      examples.back().log.push_back(By(kManager, line.substr(6)));
    } else if (line != "  none") {
      examples.back().rows.push_back(line.substr(2));
    }
  }
  return examples;
}

TEST(Event, MakesTheRowsAndLinesThatTheDocumentTells) {
  const std::vector<Example> examples = Examples();
  Car car;
  car.UseServers();
  car.Run({"-l", "191"});  // all masks except the entry traces
  Lines expected;
  for (const Example& example : examples) {
    Lines log = car.LogAfter(example.Type(), example.Payload());
    std::erase(log, "128 MetadataMgrServer: Bookmark");
    std::erase(log, By(kManager, "128 LVSStateChangeHandler"));
    EXPECT_EQ(log, example.log) << example.message;
    expected.insert(expected.end(), example.rows.begin(), example.rows.end());
  }
  EXPECT_EQ(car.Quit(), 0);
  Lines events = car.Events();
  for (std::string& line : events) {
    if (line.starts_with("live stream")) line.replace(line.rfind(' '), std::string::npos, " T");
  }
  EXPECT_EQ(Joined(events), Joined(expected));
  EXPECT_EQ(car.Records("source LIKE 'live stream %' AND abs(sender_tick-tick)>10000"), Lines{});
}

TEST(Event, OfEachItemHasAnExampleInTheDocument) {
  const std::vector<Example> examples = Examples();
  const auto has = [&](unsigned int type) {
    return std::ranges::any_of(examples, [type](const Example& example) { return example.Type() == type; });
  };
  for (const ServerRow& server : servers::kAll) {
    const bool isLive = server.process == e_Process_ExternalMgr;  // all streams are alike
    for (const ServedItem& item : server.items)
      EXPECT_TRUE(isLive || has(item.notificationId)) << server.name << " " << item.id;
  }
}

TEST(Event, IsRecordedInSilenceAtLogLevelZero) {
  Car car;
  car.Run({"-l", "0"});
  car.stateMgr.Send(kBookmark, "00000001");
  EXPECT_EQ(car.Quit(), 0);
  EXPECT_EQ(car.Events(), Lines{"bookmark set event 1"});
  EXPECT_EQ(car.program->Err(), "");
}

TEST(Event, IsOnDiskSoonAndAtOnceWhereItIsCritical) {
  Car car;
  car.Run();
  car.stateMgr.Send(kCameraState, "00000001 00000002 00000003");
  EXPECT_TRUE(Eventually([&] { return car.Events() == Lines{"camera 2 state 3 event 1"}; }));
  car.stateMgr.Send(kBookmark, "00000002");
  EXPECT_TRUE(car.Answers());
  car.program->Signal(SIGKILL);
  EXPECT_EQ(car.End(), 128 + SIGKILL);
  EXPECT_EQ(car.Events(), (Lines{"camera 2 state 3 event 1", "bookmark set event 2"}));
  EXPECT_EQ(car.Records("source='run'"), Lines{});

  car.Run();  // the next run begins its own file
  EXPECT_EQ(car.Quit(), 0);
  EXPECT_EQ(car.Events(), Lines{});
  EXPECT_EQ(car.Records("event='initial' AND text LIKE 'cut off metadata.000001.db at tick %'").size(), 1U);
}

TEST(Event, IsInventedOrOfHighQualityWhereForced) {
  Car car;
  car.environment["FORCE_METADATA"] = "";
  car.environment["LVS_FORCE_HQ"] = "";
  car.Run();
  car.externalMgr.Send(kLiveStream0 + 5, "01 00 0002" + Text("192.168.1.20") + "022a");
  EXPECT_EQ(car.externalMgr.Ask(kPing, "", kPong), "");
  EXPECT_EQ(car.Quit(), 0);
  EXPECT_EQ(car.Log(), Lines{"4 MetadataMgr: Forcing fake periodic metadata"});
  EXPECT_EQ(car.Records("text='on camera 2 high quality to 192.168.1.20:554'").size(), 1U);
  const Lines fillers = car.Records("source='filler' AND event='event'");
  ASSERT_FALSE(fillers.empty());
  EXPECT_GT(std::stoul(fillers[0].substr(std::string("filler Test string for filler ").size())), 0U);
}

TEST(Event, IsInventedWhereSimulated) {
  const struct {
    Arguments arguments;
    std::set<std::string> sources;
  } table[] = {
      {{"-s"}, {"aux", "brakes", "doorOpen", "gps", "ignition", "lights", "microphone", "radar", "siren"}},
      {{"-s", "-r"}, {"radar"}},
      {{"-r"}, {}},
  };
  for (const auto& row : table) {
    Car car;
    car.Run(row.arguments);
    EXPECT_EQ(car.Quit(), 0);
    std::set<std::string> sources;
    for (const std::string& line : car.Events()) sources.insert(line.substr(0, line.find(' ')));
    for (const char* byChance : {"bookmark", "speed"}) sources.erase(byChance);
    EXPECT_EQ(sources, row.sources);
    EXPECT_EQ(car.Log(), Lines{});
  }
}

}  // namespace
