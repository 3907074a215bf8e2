#include <sys/socket.h>

#include "Car.h"
#include "support/Eventually.h"
#include "support/Hex.h"
#include "support/RawPeer.h"

namespace {

const std::string kName = "MetadataMgr";

TEST(Hostile, OnlyTheStateManagerSaysWhoDied) {
  Car car;
  Peer tool("Tool");
  car.Run({"-l", "255"});
  EXPECT_EQ(car.LogAfter(tool, kDied, "0000000c"),
            Lines{"2 LinxIpc: Dropped a process-died notice from Tool"});
}

TEST(Hostile, WhoDoesNotTakeItsAnswerIsSaid) {
  const struct {
    unsigned int type;
    std::string payload;
    const char* says;
  } rows[] = {
      {kLogLevelGet, "0000", "2 Common/Misc/ProcessInitializer: handleLogLevel: Failed to send response"},
      {kPing, "", "1 MetadataMgr: Error Sending Response"},
      {kGetTick, "", "2 MetadataMgr: GetLastSystemTickHandler: Failed to send response"},
      {kCopy, std::string(1032, 'x'), "2 MetadataMgr: MetadataToFileHandler: Failed to send response"},
  };
  Car car;
  car.Run();
  for (const auto& row : rows) {
    const RawPeer deaf = RawPeer::To(kName, "Deaf");
    ASSERT_EQ(shutdown(deaf.fd(), SHUT_RD), 0);
    EXPECT_EQ(deaf.Send(Packet(row.type, row.payload)), 0);
    EXPECT_TRUE(Eventually([&] {
      const Lines log = car.Log();
      return !log.empty() && log.back() == row.says;
    })) << row.says;
  }
  EXPECT_EQ(car.Quit(), 0);
}

TEST(Hostile, ASecondOneUnderTheNameDoesNotStart) {
  Car car;
  car.Run();
  Program second(car.Directory(), {}, car.environment);
  EXPECT_EQ(second.End(), 1);
  EXPECT_EQ(
      LogText(second.Err()),
      (Lines{"1 LinxIpc: Cannot open endpoint MetadataMgr: Address already in use",
             "1 Common/Misc/ProcessInitializer: ProcessInitializer::SetupIpc - Error initializing the Server",
             "1 Common/Misc/ProcessInitializer: Init: Server setup failed",
             "1 MetadataMgr: Unable to initialize MetadataMgr"}));
  EXPECT_TRUE(car.Answers());
  EXPECT_TRUE(car.stateMgr.HasHeardNothing());
  EXPECT_EQ(car.SharedRecord()[0], 1);
  EXPECT_EQ(car.Quit(), 0);
}

}  // namespace
