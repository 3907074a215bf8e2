#include "Car.h"

#include <algorithm>

#include "support/RawPeer.h"
#include "system/Servers.h"

namespace {

bool CanBeSwitchedOff(const ServerRow& server) {
  return server.offSwitch != nullptr && server.process != e_Process_StateMgr;
}

// Accepts all subscriptions to a server that the test plays.
void AcceptAll(Peer& peer, e_Process server, const std::string& value) {
  for (std::size_t i = 0; i < servers::Of(server).items.size(); ++i) peer.Accept(value);
}

}  // namespace

Car::Car() {
  for (const ServerRow& server : servers::kAll) {
    const bool played = server.process == e_Process_StateMgr || server.process == e_Process_ExternalMgr;
    EXPECT_TRUE(played || CanBeSwitchedOff(server)) << "nobody plays " << server.name;
    if (!played) environment[server.offSwitch] = "";
  }
}

void Car::UseServers() {
  servers = std::make_unique<FakeServers>(
      std::map<std::string, Behaviour>{{"StateMgr", {.absent = true}}, {"ExternalMgr", {.absent = true}}});
  for (const ServerRow& server : servers::kAll) {
    if (CanBeSwitchedOff(server)) environment.erase(server.offSwitch);
  }
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
  ServeStateMgr();
  ServeExternalMgr(externalMgr);
  return stateMgr.Await(kSubscribed);
}

void Car::ServeStateMgr() {
  AcceptAll(stateMgr, e_Process_StateMgr, "00000000");
}

void Car::ServeExternalMgr(Peer& peer) {
  AcceptAll(peer, e_Process_ExternalMgr, "00 00 0000 0000 0000");
}

int Car::Quit() {
  stateMgr.Send(kQuit);
  EXPECT_EQ(stateMgr.Await(kShutdownDone), "");
  EXPECT_EQ(Records("source='run'"), Lines{"run clean end event"});
  return End();
}

std::string ServerOf(unsigned int notice) {
  for (const ServerRow& server : servers::kAll) {
    const bool sends =
        std::any_of(server.items.begin(), server.items.end(),
                    [notice](const ServedItem& item) { return item.notificationId == notice; });
    if (sends) return server.name;
  }
  return "";
}

void Car::Say(unsigned int type, const std::string& payload, bool wait) {
  const std::string server = ServerOf(type);
  if (server.empty() || server == "StateMgr" || server == "ExternalMgr") {
    Peer& sender = server == "ExternalMgr" ? externalMgr : stateMgr;
    sender.Send(type, payload);
    if (wait) {
      EXPECT_EQ(sender.Ask(kPing, "", kPong), "");
    }
    return;
  }
  stateMgr.Send(kForward, ToHex(U32(type)) + payload, server);
  if (wait) {
    stateMgr.Send(kSettle, "", server);
    EXPECT_EQ(stateMgr.Await(kSettled, server), "");
  }
}

Lines Car::LogAfter(unsigned int type, const std::string& payload) {
  return LinesCausedBy([&] { Say(type, payload); });
}

Lines Car::LogAfter(Peer& sender, unsigned int type, const std::string& payload) {
  return LinesCausedBy([&] {
    sender.Send(type, payload);
    EXPECT_EQ(sender.Ask(kPing, "", kPong), "");
  });
}

Lines Car::LinesCausedBy(const std::function<void()>& act) {
  const std::size_t before = Log().size();
  act();
  Lines lines = Log();
  lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(before));
  std::erase(lines, "64 MetadataMgr: Ping Handler");
  return lines;
}
