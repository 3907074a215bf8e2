// Sends every message to the real process with a missing payload, and with a payload cut at every length.
#include "Car.h"
#include "support/Hex.h"

namespace {

const std::string kText = "0003 414243 ";  // "ABC"
const std::string kLive = "01 00 0001 " + kText + "0001";

constexpr const char* kNoCamera = "CameraStateChangedHandler: error, DataPtr is null";
constexpr const char* kNoCopy = "MetadataToFileHandler: error, DataPtr is null";
constexpr const char* kNoNotice = "NULL MESSAGE";

struct Message {
  std::string entry;  // the entry trace of the handler, "MASK TEXT"
  unsigned int type;
  std::string payload;
  const char* missing = nullptr;  // log line when the payload is missing; null: the usual line
  const std::string& source = kManager;

  std::string Handler() const { return entry.substr(entry.find(' ') + 1); }
  std::string Missing() const {
    return "2 " + source + (missing != nullptr ? missing : Handler() + ": error, DataPtr is null");
  }
  std::string TooShort() const {
    if (const std::string server = ServerOf(type); !server.empty()) {
      return "2 SubscribeClient: Dropped notice " + std::to_string(type) + " from " + server +
             ": payload is too short for its item";
    }
    if (type == kCopy) return "2 " + source + "MetadataToFileHandler: malformed request";
    const bool isNotice = type == kDied || type == kRestarted;
    return "2 " + source + (isNotice ? "Process notice" : Handler()) + ": payload is too short";
  }
};

const Message kMessages[] = {
    {"64 VehicleInfoChangedHandler", kVehicle, kText + kText},
    {"64 SystemInfoChangedHandler", kSystem, kText + kText},
    {"64 DeptInfoChangedHandler", kDepartment, kText + kText},
    {"64 OfficerChangedHandler", kOfficer, kText + kText},
    {"64 VideoRecordingSettingsChangedHandler", kSettings, Zeros(12)},
    {"64 ExternalInputEventHandler", kInputs, Zeros(16)},
    {"64 GpsStatusEventHandler", kGps, Zeros(65)},
    {"64 RadarEventHandler", kRadar, Zeros(14)},
    {"64 RecordStartHandler", kRecordStart, Zeros(4)},
    {"64 RecordStopHandler", kRecordStop, Zeros(4)},
    {"64 EnterCovertModeHandler", kEnterCovert, Zeros(4)},
    {"64 ExitCovertModeHandler", kExitCovert, Zeros(4)},
    {"64 MicMgrStatusHandler", kMics, "0002" + Zeros(16)},
    {"64 CrashDetectHandler", kCrash, Zeros(5)},
    {"64 VideoMgrCameraItemHandler", kCameras, Zeros(40), kNoCamera},
    {"64 VideoMgrStreamQualityItemHandler", kQuality, Zeros(36), kNoCamera},
    {"64 TempChangeHandler", kTemperatures, Zeros(12)},
    {"128 LVSStateChangeHandler", kLiveStream0, kLive},
    {"128 LVSStateChangeHandler", kLiveStream0 + 5, kLive},
    {"64 MetadataToFile", kCopy, "61" + Zeros(1031), kNoCopy},
    {"64 VideoStreamStateChangeHandler", kStreamState, Zeros(12)},
    {"64 CliCameraStateChangedHandler", kCameraState, Zeros(12), kNoCamera},
    {"64 MicStateChangedHandler", kMicState, Zeros(10)},
    {"64 RecordStartStopHandler", kRecordStartStop, Zeros(5)},
    {"64 BookmarkHandler", kBookmark, Zeros(4)},
    {"128 HandleLogLevel", kLogLevelSet, "00000007", nullptr, kInitializer},
    {"128 HandleLogLevel", kLogLevelGet, Zeros(4), nullptr, kInitializer},
    {"128 Process Died", kDied, Zeros(4), kNoNotice, kInitializer},
    {"128 Process Restarted", kRestarted, Zeros(4), kNoNotice, kInitializer},
};

TEST(Payload, ThatIsMissingIsSaidAndNothingElse) {
  Car car;
  car.UseServers();
  car.Run({"-l", "255"});
  for (const Message& message : kMessages) {
    EXPECT_EQ(car.LogAfter(message.type), (Lines{By(message.source, message.entry), message.Missing()}));
  }
  EXPECT_TRUE(car.stateMgr.HasHeardNothing());  // and there is no answer
  EXPECT_EQ(car.Quit(), 0);
  EXPECT_EQ(car.Events(), Lines{});
}

// The payload of a request for the level is not read.
TEST(Payload, CutAtEveryLengthIsDroppedWithOneLine) {
  Car car;
  car.UseServers();
  car.Run();
  for (const Message& message : kMessages) {
    SCOPED_TRACE(message.entry);
    const std::string whole = FromHex(message.payload);
    Lines said = car.Log();
    for (std::size_t bytes = 1; bytes < whole.size(); ++bytes) {
      car.Say(message.type, ToHex(whole.substr(0, bytes)));
      if (message.type == kCopy) {
        EXPECT_EQ(car.stateMgr.Await(kCopied), "00");
      }
      if (message.type != kLogLevelGet) said.push_back(message.TooShort());
    }
    EXPECT_EQ(car.Log(), said);
  }
  EXPECT_EQ(car.Quit(), 0);
  EXPECT_EQ(car.Events(), Lines{});
}

}  // namespace
