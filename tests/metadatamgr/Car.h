#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "Peer.h"
#include "Program.h"
#include "events/FakeServers.h"
#include "support/IpcDir.h"
#include "support/LogText.h"
#include "support/TempDir.h"

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

constexpr unsigned int kTrouble = 1 | 2 | 16;

// The sources of log lines.
const std::string kManager = "MetadataMgr: ";
const std::string kInitializer = "Common/Misc/ProcessInitializer: ";

// "64 PreInit" as the source logs it: "64 MetadataMgr: PreInit".
inline std::string By(const std::string& source, std::string line) {
  return line.insert(line.find(' ') + 1, source);
}

// A car with nothing running in it but the state manager and the external manager, which the test
// plays (the other servers are switched off unless UseServers is called), and a disk, a shared record
// and a log of its own.
class Car {
  IpcDir ipcDirectory_;
  TempDir directory_;

 public:
  Car();
  ~Car();

  Environment environment;
  Peer stateMgr{"StateMgr"};
  Peer externalMgr{"ExternalMgr"};

  // From now on the other eight servers are there, too.
  void UseServers();
  // Starts MetadataMgr.
  void Start(const Arguments& arguments = {}, int out = -1);
  // Starts it and leads it up to its main loop.
  void Run(const Arguments& arguments = {});
  // The state manager asks it to subscribe; the answer.
  std::string Subscribe(const std::string& flag = "01");
  // Accepts its subscriptions with the two servers.
  void Serve(bool withStateMgr = true);
  // Another one in the same car.
  std::unique_ptr<Program> StartAnother() const;

  // Waits for the end: the exit status, or 128 plus the number of the signal.
  int End() { return program->End(); }
  // The state manager lets it quit.
  int Quit();

  // The lines logged so far, of these masks.
  Lines Log(unsigned int masks = 255) const { return LogOf(*program, masks); }
  static Lines LogOf(const Program& program, unsigned int masks = 255);
  bool Logged(const std::string& line) const;
  // Sends a message and a ping; the lines that the message caused.
  Lines LogAfter(Peer& sender, unsigned int type, const std::string& payload = "");
  Lines LogAfter(unsigned int type, const std::string& payload = "") {
    return LogAfter(stateMgr, type, payload);
  }
  // False when it does not answer.
  bool Answers() { return stateMgr.Ask(kPing, "", kPong).empty(); }

  // Records of the latest recording, oldest first: "SOURCE TEXT KIND SENDER'S-TICK".
  Lines Records(const std::string& where = "1") const;
  // The events that came from outside.
  Lines Events() const {
    return Records("event='event' AND source NOT IN ('clock','system','run') AND source NOT LIKE 'speed%'");
  }

  std::string Path(const std::string& name) const { return directory_.Path(name); }
  void Write(const std::string& name, const std::string& content) const { directory_.Write(name, content); }

  // The fields of the shared record.
  std::string SharedRecord() const;

  std::unique_ptr<FakeServers> servers;
  std::unique_ptr<Program> program;
};
