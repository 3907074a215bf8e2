#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "FakeServers.h"
#include "Peer.h"
#include "Recorder.h"

// Messages; interface constants of the system.
constexpr unsigned int kLogLevelSet = 1872, kLogLevelGet = 1873, kLogLevel = 1874;
constexpr unsigned int kSubscribeItem = 1856, kItem = 1857, kUnsubscribeItem = 1858;
constexpr unsigned int kStarted = 13232, kSubscribe = 13233, kSubscribed = 13234, kFullRun = 13235;
constexpr unsigned int kRestarted = 13236, kDied = 13237, kQuit = 13238, kShutdownDone = 13239;
constexpr unsigned int kFailedStart = 13244;
constexpr unsigned int kPing = 13488, kPong = 13489, kCopy = 13490, kCopied = 13491;
constexpr unsigned int kGetTick = 13498, kTick = 13499;
constexpr unsigned int kStreamState = 13500, kCameraState = 13501, kMicState = 13502;
constexpr unsigned int kRecordStartStop = 13503, kBookmark = 13509;
constexpr unsigned int kGetRecording = 13616, kRecording = 13617;
// Notices of the servers.
constexpr unsigned int kVehicle = 13492, kSystem = 13493, kDepartment = 13494, kOfficer = 13495;
constexpr unsigned int kSettings = 13496, kInputs = 13497, kGps = 13504, kRecordStart = 13505;
constexpr unsigned int kRecordStop = 13506, kEnterCovert = 13507, kExitCovert = 13508, kRadar = 13510;
constexpr unsigned int kMics = 13511, kCrash = 13512, kCameras = 13513, kQuality = 13514;
constexpr unsigned int kTemperatures = 13515, kLiveStream0 = 18952;

// The server that sends a notice; empty for a message of another kind.
std::string ServerOf(unsigned int notice);

// The payload of a request for a copy.
inline std::string CopyRequest(std::string destination, const std::string& range = "00000000 ffffffff") {
  destination.resize(1024, '\0');
  return ToHex(destination) + range;
}

// A car in which the test plays the state manager and the external manager. The other servers are switched
// off until UseServers is called.
class Car : public Recorder {
 public:
  Car();

  // Starts the other servers.
  void UseServers();
  // Starts MetadataMgr and waits for its started notice.
  void Begin(const Arguments& arguments = {});
  // Starts MetadataMgr and leads it up to its main loop.
  void Run(const Arguments& arguments = {});
  // Sends the subscribe request of the state manager. Returns the answer.
  std::string Subscribe(const std::string& flag = "01");
  // Accept the subscriptions to the two servers that the test plays.
  void ServeStateMgr();
  static void ServeExternalMgr(Peer& peer);
  // Sends the quit notice of the state manager. Returns the exit status.
  int Quit();

  // Sends a message to the process; a notice comes from its server. With `wait` returns once the process has
  // handled it.
  void Say(unsigned int type, const std::string& payload = "", bool wait = true);

  // Sends a message and a ping. Returns the log lines of the message.
  Lines LogAfter(Peer& sender, unsigned int type, const std::string& payload = "");
  Lines LogAfter(unsigned int type, const std::string& payload = "");
  // Returns false when the process does not answer.
  bool Answers() { return stateMgr.Ask(kPing, "", kPong).empty(); }

  Lines LinesCausedBy(const std::function<void()>& act);

  Peer stateMgr{"StateMgr"};
  Peer externalMgr{"ExternalMgr"};
  std::unique_ptr<FakeServers> servers;
};
