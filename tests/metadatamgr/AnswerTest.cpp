// The process's own answers, over the scripted endpoint: what is said where one cannot be made or sent.
#include <gtest/gtest.h>

#include "ControlRequests.h"
#include "MetadataMgr.h"
#include "ipc/PeerQueue.h"
#include "misc/ScriptedEndpoint.h"

// The endpoint serves no peers of its own accord here.
int PostToPeer(LinxIpc& /*ipc*/, const std::string& /*peer*/, unsigned int /*type*/,
               const unsigned char* /*payload*/, std::size_t /*size*/, std::size_t /*maxQueuedBytes*/) {
  return 0;
}
std::uint64_t PeerConnection(LinxIpc& /*ipc*/, const std::string& /*peer*/) {
  return 0;
}
void OnPeerGone(LinxIpc& /*ipc*/, PeerGoneFunction /*function*/, void* /*context*/) {}

namespace {

// Before the first line of the whole program.
const int kLogTarget = setenv("LOG_TARGET", "stderr", 1);

class AnswerTest : public testing::Test {
 protected:
  AnswerTest() {
    script = {};
    LogClient::Instance().Level(3);
  }

  Lines LogOf(LinxIpc::Handler handler, void* context, const std::string& payload = "00") {
    ipc_.RegisterHandler(1, handler, context);
    script.arrivals = {{0, 1, payload, "Tool"}};
    testing::internal::CaptureStderr();
    (void)ipc_.Receive(-1, 0, LinxIpc::emptyString, nullptr);
    return LogText(testing::internal::GetCapturedStderr());
  }

  LinxIpc ipc_{"MetadataMgr"};
  MetadataMgr manager_;
};

const struct {
  LinxIpc::Handler handler;
  unsigned int answer;
  const char* cannotAllocate;
  const char* cannotSend;
} kAnswers[] = {
    {PingHandler, 13489, "1 MetadataMgr: Error Allocating Message", "1 MetadataMgr: Error Sending Response"},
    {MetadataMgr::GetLastSystemTickHandler, 13499,
     "1 MetadataMgr: GetLastSystemTickHandler: Cannot allocate response",
     "2 MetadataMgr: GetLastSystemTickHandler: Failed to send response"},
    {MetadataMgr::MetadataToFileHandler, 13491,
     "1 MetadataMgr: MetadataToFileHandler: Cannot allocate response",
     "2 MetadataMgr: MetadataToFileHandler: Failed to send response"},
};

TEST_F(AnswerTest, ThatCannotBeMadeOrSentIsLogged) {
  const std::string copyRequest(std::size_t{2} * 1032, '0');
  for (const auto& row : kAnswers) {
    script.cannotAllocate = row.answer;
    EXPECT_EQ(LogOf(row.handler, &manager_, copyRequest), Lines{row.cannotAllocate});
    script.cannotAllocate = 0;
    script.cannotSend = row.answer;
    EXPECT_EQ(LogOf(row.handler, &manager_, copyRequest), Lines{row.cannotSend});
  }
}

TEST_F(AnswerTest, NeedsTheManager) {
  EXPECT_EQ(LogOf(MetadataMgr::GetLastSystemTickHandler, nullptr),
            Lines{"2 MetadataMgr: GetLastSystemTickHandler invalid argument"});
  EXPECT_EQ(LogOf(MetadataMgr::MetadataToFileHandler, nullptr),
            Lines{"2 MetadataMgr: MetadataToFileHandler invalid argument"});
}

TEST_F(AnswerTest, SaysThatThereIsNoTickBeforeTheFirst) {
  EXPECT_EQ(LogOf(MetadataMgr::GetLastSystemTickHandler, &manager_), Lines{});
  EXPECT_EQ(script.happened.back(), "send Tool 13499 ff ff ff ff 00 00 00 00");
}

TEST_F(AnswerTest, ServersAreReleasedInTheirOwnOrderAndWithoutWaiting) {
  script.acceptsSubscriptions = true;
  testing::internal::CaptureStderr();
  EXPECT_TRUE(manager_.SubscribeToServers(ipc_, true));
  script.happened.clear();
  manager_.Cleanup();
  EXPECT_EQ(LogText(testing::internal::GetCapturedStderr()), Lines{});
  Lines released;
  for (const std::string& what : script.happened) {
    if (what.find(" 1858 ") == std::string::npos) continue;
    const std::string server = what.substr(0, what.find(" 1858 "));
    if (released.empty() || released.back() != server) released.push_back(server);
  }
  Lines expected;
  for (const char* server : {"ConfigMgr", "Fpga", "GpsHal", "RadarHal", "VideoMgr", "TempHal", "AccelHal",
                             "MicMgr", "ExternalMgr", "StateMgr"}) {
    expected.push_back(std::string("hasty send ") + server);
  }
  EXPECT_EQ(released, expected);
}

TEST_F(AnswerTest, LeavesTheReplyAloneWhereThereIsNoItem) {
  IpcMessage reply;
  MetadataMgrServer server(ipc_);
  testing::internal::CaptureStderr();
  server.GetItem(1, reply, 1857);
  script.cannotAllocate = 1857;
  server.GetItem(0, reply, 1857);
  EXPECT_EQ(LogText(testing::internal::GetCapturedStderr()),
            (Lines{"2 MetadataMgrServer: GetItem Unknown item passed in 1",
                   "2 MetadataMgrServer: GetItem: Failed to allocate message"}));
  EXPECT_EQ(reply.MsgType(), 0U);
}

}  // namespace
