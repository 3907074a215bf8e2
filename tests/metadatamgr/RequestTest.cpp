#include "Car.h"
#include "support/Eventually.h"
#include "support/Hex.h"
#include "system/BigEndian.h"
#include "system/Systick.h"

namespace {

TEST(Bookmark, ReachesItsSubscribersAndIsTheOnlyItem) {
  const std::string request = "00 00 00 00 00 00 12 34";
  Car car;
  Peer display("Display");
  car.Run({"-l", "131"});
  for (Peer* peer : {&display, &car.stateMgr}) {
    EXPECT_EQ(peer->Ask(kSubscribeItem, request, kItem), request + " 00 00 00 00 00");
  }
  car.stateMgr.Send(kBookmark, "00000001");
  for (Peer* peer : {&display, &car.stateMgr}) EXPECT_EQ(peer->Await(0x1234), "01");
  display.Send(kUnsubscribeItem, request);
  EXPECT_EQ(
      car.LogAfter(display, kSubscribeItem, "00000001 00001234"),
      (Lines{"128 MetadataMgrServer: GetItem", "2 MetadataMgrServer: GetItem Unknown item passed in 1"}));
  EXPECT_EQ(display.Await(kItem), "00 00 00 01 00 00 12 34 00 00 00 02");
  car.stateMgr.Send(kBookmark, "00000002");
  EXPECT_EQ(car.stateMgr.Await(0x1234), "01");
  EXPECT_TRUE(display.HasHeardNothing());
}

TEST(Request, LastSystemTickIsTheOneThatTheStoreHolds) {
  Car car;
  car.Begin();
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
  const std::string payloads[] = {"61", CopyRequest("copy.db"), CopyRequest(std::string(1024, 'x')),
                                  CopyRequest("")};
  Car car;
  car.Run();
  for (const std::string& payload : payloads) EXPECT_EQ(car.stateMgr.Ask(kCopy, payload, kCopied), "00");
  const std::string malformed = "2 MetadataMgr: MetadataToFileHandler: malformed request";
  const std::string notAbsolute = "1 MetadataReader: Copy failed (the path is not absolute): ";
  EXPECT_EQ(car.Log(), (Lines{malformed, notAbsolute + "copy.db", malformed, notAbsolute}));
}

}  // namespace
