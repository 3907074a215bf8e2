// The payloads of every message and message at the real process: cut at every length, and filled with
// values that nobody should send.
#include "Car.h"
#include "support/Hex.h"

namespace {

// What a handler makes of a payload that is too short.
enum class Short {
  kDropped,    // one line, no record
  kAsMade,     // one line, the item is recorded as it is constructed
  kZerosRead,  // what is missing reads as zero
};

const std::string kText = "0003 414243 ";  // "ABC"
const std::string kLive = "01 00 0001 " + kText + "0001";
std::string Zeros(std::size_t bytes) {
  return std::string(2 * bytes, '0');
}

Lines TooShort(const std::string& source, const std::string& who) {
  return {source + who + ": payload is too short"};
}

const struct {
  const char* name;
  unsigned int type;
  std::string payload;
  Short whenShort;
  Lines says = {};  // of kDropped: the line; of kAsMade: the records
} kMessages[] = {
    {"Vehicle", 13492, kText + kText, Short::kAsMade, {"vehicle unit , plate  event"}},
    {"System", 13493, kText + kText, Short::kAsMade, {"system info , software  event"}},
    {"Department", 13494, kText + kText, Short::kAsMade, {"department ,  event"}},
    {"Officer", 13495, kText + kText, Short::kAsMade, {"officer , badge  event"}},
    {"Settings",
     13496,
     Zeros(12),
     Short::kAsMade,
     {"recording settings 0 s before, 0 s after, 0x0 0 frames/s 0 kbit/s event"}},
    {"Inputs", 13497, Zeros(16), Short::kAsMade},
    {"Gps", 13504, Zeros(65), Short::kAsMade, {"gps no fix event"}},
    {"RecordStart", 13505, Zeros(4), Short::kZerosRead},
    {"RecordStop", 13506, Zeros(4), Short::kZerosRead},
    {"EnterCovert", 13507, Zeros(4), Short::kZerosRead},
    {"ExitCovert", 13508, Zeros(4), Short::kZerosRead},
    {"Radar", 13510, Zeros(14), Short::kAsMade, {"radar 1 reading event", "radar 1 0 0 0 event 0"}},
    {"Mics", 13511, "00000002" + Zeros(16), Short::kZerosRead},
    {"Crash", 13512, Zeros(5), Short::kZerosRead},
    {"Cameras", 13513, Zeros(40), Short::kZerosRead},
    {"Quality", 13514, Zeros(36), Short::kZerosRead},
    {"Temperatures", 13515, Zeros(12), Short::kZerosRead},
    {"Live0", 18952, kLive, Short::kZerosRead},
    {"Live1", 18953, kLive, Short::kZerosRead},
    {"Live2", 18954, kLive, Short::kZerosRead},
    {"Live3", 18955, kLive, Short::kZerosRead},
    {"Live4", 18956, kLive, Short::kZerosRead},
    {"Live5", 18957, kLive, Short::kZerosRead},
    {"Copy",
     kCopy,
     "61" + Zeros(1031),
     Short::kDropped,
     {kManager + "MetadataToFileHandler: malformed request"}},
    {"StreamState", kStreamState, Zeros(12), Short::kDropped,
     TooShort(kManager, "VideoStreamStateChangeHandler")},
    {"CameraState", kCameraState, Zeros(12), Short::kDropped,
     TooShort(kManager, "CliCameraStateChangedHandler")},
    {"MicState", kMicState, Zeros(10), Short::kDropped, TooShort(kManager, "MicStateChangedHandler")},
    {"RecordStartStop", kRecordStartStop, Zeros(5), Short::kDropped,
     TooShort(kManager, "RecordStartStopHandler")},
    {"Bookmark", kBookmark, Zeros(4), Short::kDropped, TooShort(kManager, "BookmarkHandler")},
    {"SetLogLevel", kLogLevelSet, "00000007", Short::kDropped, TooShort(kInitializer, "HandleLogLevel")},
    {"GetLogLevel", kLogLevelGet, Zeros(4), Short::kDropped, TooShort(kInitializer, "HandleLogLevel")},
    {"Died", kDied, Zeros(4), Short::kDropped, TooShort(kInitializer, "Process notice")},
    {"Restarted", kRestarted, Zeros(4), Short::kDropped, TooShort(kInitializer, "Process notice")},
};

TEST(Payload, CutAtEveryLengthHasTheOutcomeOfItsKind) {
  Car car;
  car.UseServers();
  car.Run();
  for (const auto& message : kMessages) {
    SCOPED_TRACE(message.name);
    const std::string whole = FromHex(message.payload);
    Lines said = car.Log();
    for (std::size_t bytes = 1; bytes < whole.size(); ++bytes) {
      car.stateMgr.Send(message.type, ToHex(whole.substr(0, bytes)));
      if (message.type == kCopy) {
        EXPECT_EQ(car.stateMgr.Await(kCopied), "00");
      }
      if (message.whenShort == Short::kDropped) said.push_back("2 " + message.says[0]);
      if (message.whenShort != Short::kAsMade) continue;
      said.push_back("2 Item: Payload of " + std::to_string(bytes) + " bytes is too short for its item");
    }
    ASSERT_TRUE(car.Answers());
    EXPECT_EQ(car.Log(), said);
    EXPECT_EQ(car.LogAfter(message.type).size(), 1U);  // no payload at all
    EXPECT_EQ(car.LogAfter(message.type, message.payload), Lines{});
  }
  EXPECT_EQ(car.Quit(), 0);
}

TEST(Payload, ThatIsTooShortIsRecordedAsConstructedOrNotAtAll) {
  Car car;
  car.UseServers();
  car.Run();
  Lines expected = {"crash cleared event 108"};  // the value at the subscription
  for (const auto& message : kMessages) {
    if (message.whenShort == Short::kZerosRead) continue;
    car.stateMgr.Send(message.type, "ff");
    if (message.whenShort == Short::kAsMade)
      expected.insert(expected.end(), message.says.begin(), message.says.end());
  }
  EXPECT_EQ(car.Quit(), 0);
  EXPECT_EQ(car.Events(), expected);
}

// Lengths, counts, numbers and ticks out of all bounds, in payloads of any length: the bytes are not
// read beyond what a message may have, and the process goes on.
TEST(Payload, FilledWithHostileValuesDoNoHarm) {
  Car car;
  car.UseServers();
  car.Run({"-l", "1"});
  for (const auto& message : kMessages) {
    for (const char* fill : {"ff", "80", "7f", "01", "00 ff", "ff 00", "00 00 00 20 ff"}) {
      const std::string bytes = FromHex(fill);
      std::string payload;
      while (payload.size() < IpcMessage::kMaxPayload) payload += bytes;
      for (const std::size_t size : {std::size_t{1}, std::size_t{3}, std::size_t{17}, std::size_t{64},
                                     std::size_t{300}, std::size_t{IpcMessage::kMaxPayload}}) {
        car.stateMgr.Send(message.type, ToHex(payload.substr(0, size)));
      }
    }
    ASSERT_TRUE(car.Answers()) << message.name;
  }
  EXPECT_EQ(car.Quit(), 0);
  EXPECT_EQ(car.Records("source='run'"), Lines{"run clean end event"});
  EXPECT_EQ(car.Records("source='store' AND text LIKE 'lost %'"), Lines{});
}

}  // namespace
