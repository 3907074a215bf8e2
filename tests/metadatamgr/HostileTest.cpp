#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>

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

TEST(Hostile, APeerThatNeverReadsHoldsNobodyUp) {
  Car car;
  car.Run({"-l", "1"});
  const RawPeer deaf = RawPeer::To(kName, "Deaf");
  EXPECT_EQ(deaf.Send(Packet(kSubscribeItem, FromHex("00000000 00001234"))), 0);
  for (int i = 0; i < 3000; ++i) (void)deaf.Send(Packet(kGetTick));
  for (int i = 0; i < 1000; ++i) car.stateMgr.Send(kBookmark, "00000001");
  EXPECT_TRUE(car.Answers());
  EXPECT_EQ(car.Quit(), 0);
  EXPECT_EQ(car.Events().size(), 1000U);
}

// A reader that stopped reading, and the socket of a log daemon that is full.
TEST(Hostile, ALogThatTakesNothingCostsItsLinesOnly) {
  for (const int socketType : {0, int{SOCK_DGRAM}}) {
    SCOPED_TRACE(socketType);
    int fds[2];
    ASSERT_EQ(
        socketType == 0 ? pipe2(fds, O_CLOEXEC) : socketpair(AF_UNIX, socketType | SOCK_CLOEXEC, 0, fds), 0);
    Car car;
    car.standardError = fds[1];
    car.Run({"-l", "255"});
    constexpr std::size_t kBookmarks = 2000;
    for (std::size_t i = 0; i < kBookmarks; ++i) car.stateMgr.Send(kBookmark, "00000001");
    EXPECT_TRUE(car.Answers());
    std::string log;
    const auto readOn = [&] {
      char buffer[4096];
      for (ssize_t size = 0; (size = read(fds[0], buffer, sizeof buffer)) > 0;) {
        log.append(buffer, static_cast<std::size_t>(size));
      }
    };
    fcntl(fds[0], F_SETFL, O_NONBLOCK);
    readOn();
    EXPECT_EQ(log.find(" log lines dropped\n"), std::string::npos);
    const auto lines = static_cast<unsigned long>(std::count(log.begin(), log.end(), '\n'));
    log.clear();
    EXPECT_TRUE(car.Answers());
    readOn();
    const std::size_t told = log.find(" log lines dropped\n");
    ASSERT_NE(told, std::string::npos) << log;
    const unsigned long dropped = std::strtoul(log.c_str() + log.rfind(' ', told - 1), nullptr, 10);
    EXPECT_GE(lines + dropped, 3 * kBookmarks);
    EXPECT_EQ(car.Quit(), 0);
    EXPECT_EQ(car.Events().size(), kBookmarks);
    close(fds[0]);
    close(fds[1]);
  }
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
