#include "Car.h"

namespace {

constexpr const char* kSwitches[] = {"NO_CONFIGMGR", "NO_FPGA",     "NO_GPSHAL",   "NO_RADARHAL",
                                     "NO_MICMGR",    "NO_VIDEOMGR", "NO_ACCELHAL", "NO_TEMPHAL"};

}  // namespace

Car::Car() {
  for (const char* variable : kSwitches) environment[variable] = "";
}

void Car::UseServers() {
  servers = std::make_unique<FakeServers>(
      std::map<std::string, Behaviour>{{"StateMgr", {.absent = true}}, {"ExternalMgr", {.absent = true}}});
  for (const char* variable : kSwitches) environment.erase(variable);
}

void Car::Begin(const Arguments& arguments) {
  Start(arguments);
  EXPECT_EQ(stateMgr.Await(kStarted), "00 00 00 13");
}

void Car::Run(const Arguments& arguments) {
  Begin(arguments);
  EXPECT_EQ(Subscribe(), "01");
  stateMgr.Send(kFullRun);
  EXPECT_TRUE(Answers());
}

std::string Car::Subscribe(const std::string& flag) {
  stateMgr.Send(kSubscribe, flag);
  Serve();
  return stateMgr.Await(kSubscribed);
}

void Car::Serve(bool withStateMgr) {
  for (int event = 0; withStateMgr && event < 4; ++event) stateMgr.Accept("00000000");
  for (int stream = 0; stream < 6; ++stream) externalMgr.Accept("00 00 0000 0000 0000");
}

int Car::Quit() {
  stateMgr.Send(kQuit);
  EXPECT_EQ(stateMgr.Await(kShutdownDone), "");
  EXPECT_EQ(Records("source='run'"), Lines{"run clean end event"});
  return End();
}

Lines Car::LogAfter(Peer& sender, unsigned int type, const std::string& payload) {
  const std::size_t before = Log().size();
  sender.Send(type, payload);
  EXPECT_EQ(sender.Ask(kPing, "", kPong), "");
  Lines lines = Log();
  lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(before));
  std::erase(lines, "64 MetadataMgr: Ping Handler");
  return lines;
}
