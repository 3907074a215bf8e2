#include "ClientsFixture.h"
#include "clients/StreamMgrApi.h"
#include "support/Child.h"

namespace {

using StreamMgrTest = ClientsTest;

TEST_F(StreamMgrTest, AnswerIsATextOrEmpty) {
  using namespace std::string_literals;
  const struct {
    const char* what;
    std::string payload;
    std::string expected;
  } kCases[] = {
      {"recording", "\0\6REID-1"s, "REID-1"},
      {"none", "\0\0"s, ""},
      {"nothing", "", ""},
      {"half a length", "\0"s, ""},
      {"cut off", "\0\6REI"s, ""},
      {"longer than any", "\1\0"s + std::string(256, 'r'), std::string(255, 'r')},
  };
  const RawPeer streamMgr = ComesUp("StreamMgr");
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    ASSERT_EQ(streamMgr.Send(Packet(13617, c.payload)), 0);
    EXPECT_EQ(StreamMgrApi::CurrentlyRecordingREID(me_, 20000), c.expected);
    EXPECT_EQ(streamMgr.Receive(0), Packet(13616));
  }
}

TEST_F(StreamMgrTest, SilenceEndsWithTheTime) {
  const RawListener silent("StreamMgr");
  const Stopwatch watch;
  EXPECT_EQ(StreamMgrApi::CurrentlyRecordingREID(me_, 150), "");
  EXPECT_GE(watch.Ms(), 150);
  EXPECT_LT(watch.Ms(), 2000);
}

}  // namespace
