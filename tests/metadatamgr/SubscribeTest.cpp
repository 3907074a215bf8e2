// The subscriptions of the process, the records of the answers, and the renewal.
#include <algorithm>
#include <iterator>

#include "Car.h"
#include "Documents.h"
#include "support/Eventually.h"
#include "support/RawPeer.h"
#include "system/Servers.h"

namespace {

// The servers that FakeServers plays. The test plays the state manager and the external manager.
std::vector<ServerRow> Played() {
  std::vector<ServerRow> rows(std::begin(servers::kAll), std::end(servers::kAll));
  std::erase_if(rows, [](const ServerRow& server) {
    return server.process == e_Process_StateMgr || server.process == e_Process_ExternalMgr;
  });
  return rows;
}

Lines AskedOf(const ServerRow& server) {
  Lines asked;
  for (const ServedItem& item : server.items)
    asked.push_back(std::string(server.name) + " " + std::to_string(item.id));
  return asked;
}

// All requested items except those of one server.
Lines AskedBut(const char* left = "") {
  Lines asked;
  for (const ServerRow& server : Played()) {
    if (std::string(server.name) != left) std::ranges::copy(AskedOf(server), std::back_inserter(asked));
  }
  return asked;
}

// The records of the servers' values.
Lines Values(const Car& car) {
  return car.Records(
      "seq<(SELECT min(seq) FROM timeline WHERE event='restated') AND "
      "source NOT IN ('clock','device','previous run','store','system')");
}

TEST(Subscribe, RecordsWhatTheServersAnswer) {
  Car car;
  car.UseServers();
  car.Run();
  EXPECT_EQ(car.servers->Asked(), AskedBut());
  EXPECT_EQ(car.Quit(), 0);
  EXPECT_EQ(Joined(Values(car)), Joined(BlocksOf(EVENTS_DOCUMENT, "start")));
}

TEST(Subscribe, RecordsInputsGpsAndRadarAlsoWithoutTheirServers) {
  Car car;
  car.Run({"-l", "35"});
  Lines ignored;
  for (const ServerRow& server : Played()) {
    const std::string name = server.name;
    if (server.defaultWhenOff) continue;
    const std::string text =
        std::string("32 SubscribeTo").append(name).append(" - set to ignore ").append(name);
    ignored.push_back(By(kManager, text + " "));
  }
  EXPECT_EQ(car.Log(), ignored);
  EXPECT_EQ(car.Quit(), 0);
  EXPECT_EQ(Values(car), (Lines{"lights off initial 0", "brakes off initial 0", "siren off initial 0",
                                "aux off initial 0", "doorOpen closed initial 0", "ignition off initial 0",
                                "gps no fix initial", "speed gps not valid event",
                                "radar 1 no reading initial", "speed radar not valid event"}));
}

TEST(Subscribe, SwitchesLeaveOutTheirServer) {
  for (const ServerRow& server : Played()) {
    Car car;
    car.UseServers();
    car.environment[server.offSwitch] = "";
    car.Run();
    EXPECT_EQ(car.servers->Asked(), AskedBut(server.name));
  }
}

// ---- Restarts

Lines SaidOfRestart(unsigned int process, const char* server) {
  return {By(kInitializer, "128 Process Restarted"),
          By(kManager, "64 Process Restarted " + std::to_string(process)),
          By(kManager, "128 Need to resubscribe to " + std::string(server))};
}

TEST(Restart, RenewsTheSubscriptionsOfItsServerAndReportsNothing) {
  Car car;
  car.UseServers();
  car.Run({"-l", "255"});
  (void)car.servers->Asked();
  const auto said = [&](unsigned int process) { return car.LogAfter(kRestarted, ToHex(U32(process))); };
  for (const ServerRow& server : Played()) {
    const std::string name = server.process == e_Process_Fpga ? "FpgaHal" : server.name;
    EXPECT_EQ(said(server.process), SaidOfRestart(server.process, name.c_str()));
    Lines renewed;
    EXPECT_TRUE(Eventually([&] {
      for (const std::string& line : car.servers->Asked()) renewed.push_back(line);
      return renewed.size() >= server.items.size();
    }));
    EXPECT_EQ(renewed, AskedOf(server));
  }
  EXPECT_EQ(said(2), SaidOfRestart(2, "StateMgr"));
  car.ServeStateMgr();
  EXPECT_EQ(said(29), SaidOfRestart(29, "ExternalMgr"));
  Car::ServeExternalMgr(car.externalMgr);
  EXPECT_EQ(car.externalMgr.Ask(kPing, "", kPong), "");
  EXPECT_EQ(car.servers->Asked(), Lines{});
  EXPECT_EQ(car.Quit(), 0);
  EXPECT_EQ(car.Events(), Lines{});
}

TEST(Restart, OfAServerThatIsNotThereIsARefusedRenewalAndAnotherTriesAgain) {
  Car car;
  car.Run({"-l", "255"});
  Lines refused = SaidOfRestart(11, "MicMgr");
  refused.push_back(By(kManager, "1 MetadataMgr FAILED to resubsribe to a server"));
  EXPECT_EQ(car.LogAfter(kRestarted, "0000000b"), refused) << "switched off";
  EXPECT_EQ(car.LogAfter(kRestarted, "0000001e"),
            (Lines{By(kInitializer, "128 Process Restarted"), By(kManager, "64 Process Restarted 30")}));
  EXPECT_EQ(car.LogAfter(kDied, "00000015"),
            (Lines{By(kInitializer, "128 Process Died"), By(kManager, "64 Process Died 21")}));

  car.externalMgr.Leave();
  EXPECT_EQ(car.LogAfter(kRestarted, "0000001d").back(), refused.back()) << "too early";
  Peer successor("ExternalMgr");
  car.stateMgr.Send(kRestarted, "0000001d");
  Car::ServeExternalMgr(successor);
  successor.Send(kLiveStream0, "01 00 0001 0000 0001");
  EXPECT_EQ(successor.Ask(kPing, "", kPong), "");
  EXPECT_EQ(car.Quit(), 0);
  const Lines events = car.Events();
  ASSERT_EQ(events.size(), 1U) << "it is heard again";
  EXPECT_TRUE(events[0].starts_with("live stream 0 on camera 1 event "));
}

// ---- End

TEST(Quit, EndsTheSubscriptions) {
  Car car;
  car.Run();
  car.stateMgr.Send(kQuit);
  const auto ends = [](Peer& peer, e_Process server) {
    for (const ServedItem& item : servers::Of(server).items)
      EXPECT_EQ(peer.Await(kUnsubscribeItem), ToHex(U32(item.id) + U32(item.notificationId)));
  };
  ends(car.stateMgr, e_Process_StateMgr);
  ends(car.externalMgr, e_Process_ExternalMgr);
  EXPECT_EQ(car.stateMgr.Await(kShutdownDone), "");
  EXPECT_EQ(car.End(), 0);
}

}  // namespace
