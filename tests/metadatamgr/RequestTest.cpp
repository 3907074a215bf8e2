#include "Car.h"
#include "support/Eventually.h"
#include "support/Hex.h"
#include "system/BigEndian.h"
#include "system/Systick.h"

namespace {

TEST(Bookmark, ReachesEverySubscriber) {
  const std::string request = "00 00 00 00 00 00 12 34";
  Car car;
  Peer display("Display");
  Peer modem("Modem");
  car.Run();
  for (Peer* peer : {&display, &modem}) {
    EXPECT_EQ(peer->Ask(kSubscribeItem, request, kItem), request + " 00 00 00 00 00");
  }
  car.stateMgr.Send(kBookmark, "00000001");
  for (Peer* peer : {&display, &modem}) EXPECT_EQ(peer->Await(0x1234), "01");
  modem.Send(kUnsubscribeItem, request);
  EXPECT_EQ(modem.Ask(kPing, "", kPong), "");
  car.stateMgr.Send(kBookmark, "00000002");
  EXPECT_EQ(display.Await(0x1234), "01");
  EXPECT_EQ(modem.Ask(kPing, "", kPong), "");
  for (Peer* peer : {&display, &modem}) EXPECT_TRUE(peer->HasHeardNothing());  // once each
}

TEST(Bookmark, ReadsFalseAndIsTheOnlyItem) {
  Car car;
  car.Run({"-l", "131"});
  car.stateMgr.Send(kBookmark, "00000001");
  EXPECT_EQ(car.stateMgr.Ask(kSubscribeItem, "00000000 00000000", kItem),
            "00 00 00 00 00 00 00 00 00 00 00 00 00");
  EXPECT_EQ(
      car.LogAfter(kSubscribeItem, "00000001 00001234"),
      (Lines{"128 MetadataMgrServer: GetItem", "2 MetadataMgrServer: GetItem Unknown item passed in 1"}));
  EXPECT_EQ(car.stateMgr.Await(kItem), "00 00 00 01 00 00 12 34 00 00 00 02");
}

TEST(Request, LastSystemTickIsTheOneThatTheStoreHolds) {
  Car car;
  car.Start();
  car.stateMgr.Await(kStarted);
  EXPECT_EQ(car.stateMgr.Ask(kGetTick, "", kTick), "ff ff ff ff 00 00 00 00") << "before the first";
  const unsigned int before = Systick().SystemTick();
  car.Subscribe();
  car.stateMgr.Send(kFullRun);
  const std::string answer = FromHex(car.stateMgr.Ask(kGetTick, "ffff", kTick));
  ASSERT_EQ(answer.size(), 8U);
  const unsigned int tick = GetU32(reinterpret_cast<const unsigned char*>(answer.data()));
  EXPECT_GE(tick, before);
  EXPECT_LE(tick, Systick().SystemTick());
  EXPECT_EQ(ToHex(answer.substr(4)), "01 00 00 00");
  EXPECT_TRUE(Eventually([&] { return FromHex(car.stateMgr.Ask(kGetTick, "", kTick)) > answer; }));
}

TEST(Request, LogLevelIsSetAndRead) {
  Car car;
  Peer tool("Tool");
  car.Run({"-l", "255"});
  EXPECT_EQ(tool.Ask(kLogLevelSet, "000000c7", kLogLevel), "00 00 00 c7");
  EXPECT_EQ(car.Log().back(), By(kInitializer, "64 HandleLogLevel: set mask c7"));
  EXPECT_EQ(car.LogAfter(kLogLevelGet, "ffffffff"), Lines{By(kInitializer, "128 HandleLogLevel")});
  EXPECT_EQ(car.stateMgr.Await(kLogLevel), "00 00 00 c7");
}

TEST(Request, CopyIsAnsweredWithFailure) {
  const std::string range = "00000000 ffffffff";
  const std::string payloads[] = {"61", ToHex("copy.db" + std::string(1017, '\0')) + range,
                                  ToHex(std::string(1024, 'x')) + range,
                                  ToHex(std::string(1024, '\0')) + range};
  Car car;
  car.Run();
  for (const std::string& payload : payloads) EXPECT_EQ(car.stateMgr.Ask(kCopy, payload, kCopied), "00");
  EXPECT_EQ(car.Log(), Lines(2, "2 MetadataMgr: MetadataToFileHandler: malformed request"));
}

}  // namespace
