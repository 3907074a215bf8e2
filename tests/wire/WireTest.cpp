// Plays the packets of docs/wire.md to the real process over raw sockets. The test knows nothing but this
// page.

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <utility>

#include "WireDocument.h"
#include "support/Child.h"
#include "support/Eventually.h"
#include "support/Hex.h"
#include "support/IpcDir.h"
#include "support/LogCapture.h"
#include "support/RawPeer.h"
#include "system/Servers.h"

namespace {

// Offsets of the last byte of the item and of the notification id in a subscription.
constexpr std::size_t kItemByte = 7;
constexpr std::size_t kIdByte = 11;

class WireTest : public testing::Test {
 protected:
  WireTest() {
    setenv("METADATA_ROOT", directory_.Beside("").c_str(), 1);
    setenv("METADATA_SHM", sharedName_.c_str(), 1);
    unsetenv("NOTIFY_SOCKET");
    unsetenv("RUN_WITHOUT_STATEMGR");
    for (const ServerRow& server : servers::kAll) {
      const bool isPlayed = server.process == e_Process_StateMgr || server.process == e_Process_ExternalMgr;
      EXPECT_TRUE(isPlayed || server.offSwitch != nullptr) << "the document does not play " << server.name;
      if (!isPlayed) setenv(server.offSwitch, "", 1);
    }
  }
  ~WireTest() override { shm_unlink(sharedName_.c_str()); }

  // `peer` is the side that this test plays.
  void Send(const RawPeer& peer, const std::string& from, const std::string& name) {
    SCOPED_TRACE(name);
    ASSERT_EQ(peer.Send(document_.Bytes(name, from + " > MetadataMgr")), 0);
  }
  void Expect(const RawPeer& peer, const std::string& to, const std::string& name) {
    const std::string packet = peer.Receive().value_or("");
    EXPECT_TRUE(document_.Matches(name, "MetadataMgr > " + to, packet)) << name << ": " << ToHex(packet);
  }
  // Expects `count` requests. The document shows the first; item and id grow by one in requests and answers.
  void ExpectRequests(const RawPeer& server, const std::string& name, int count, const std::string& request,
                      const std::string& answer = {}) {
    std::string wanted = document_.Bytes(request, "MetadataMgr > " + name);
    std::string reply = answer.empty() ? wanted : document_.Bytes(answer, name + " > MetadataMgr");
    ASSERT_GT(std::min(wanted.size(), reply.size()), kIdByte);
    for (int i = 0; i < count; ++i) {
      EXPECT_EQ(ToHex(server.Receive().value_or("")), ToHex(wanted));
      EXPECT_EQ(answer.empty() ? 0 : server.Send(reply), 0);
      for (std::string* packet : {&wanted, &reply}) {
        ++(*packet)[kItemByte];
        ++(*packet)[kIdByte];
      }
    }
  }
  void PlayRequests(const RawPeer& viewer) {
    for (const char* packet : {"hello", "ping", "set-log-level", "get-log-level"})
      Send(viewer, "Viewer", packet);
    for (const char* packet : {"ping-answer", "log-level", "log-level"}) Expect(viewer, "Viewer", packet);

    for (const auto& [request, answer] : {std::pair{"follow-bookmarks", "bookmarks-followed"},
                                          {"bookmark", "bookmark-notice"},
                                          {"no-such-item", "refused"},
                                          {"get-last-tick", "last-tick"},
                                          {"copy", "copied"}}) {
      Send(viewer, "Viewer", request);
      Expect(viewer, "Viewer", answer);
    }
  }
  void Start() { Expect(stateMgr_ = stateMgrListener_.Accept(), "StateMgr", "started-hello"); }

  WireDocument document_{WIRE_DOCUMENT};
  IpcDir directory_;
  LogCapture log_;
  const std::string sharedName_ = "/mm-wire-" + std::to_string(getpid());
  RawListener stateMgrListener_{"StateMgr"};
  RawPeer stateMgr_;
};

TEST_F(WireTest, PlaysTheWholeDocument) {
  const RawListener streamMgrListener("StreamMgr");
  const RawListener externalMgrListener("ExternalMgr");
  Child process({METADATAMGR});
  Start();
  Expect(stateMgr_, "StateMgr", "started");
  Send(stateMgr_, "StateMgr", "subscribe-to-servers");
  ExpectRequests(stateMgr_, "StateMgr", 4, "follow-record-start", "record-start-followed");
  const RawPeer externalMgr = externalMgrListener.Accept();
  Expect(externalMgr, "ExternalMgr", "external-hello");
  ExpectRequests(externalMgr, "ExternalMgr", 6, "follow-live-stream", "live-stream-followed");
  const RawPeer streamMgr = streamMgrListener.Accept();
  Expect(streamMgr, "StreamMgr", "stream-hello");
  Expect(streamMgr, "StreamMgr", "get-recording");
  Send(streamMgr, "StreamMgr", "recording");
  Expect(stateMgr_, "StateMgr", "subscribed-to-servers");
  for (const char* notice : {"full-run", "died", "restarted"}) Send(stateMgr_, "StateMgr", notice);

  const RawPeer viewer = RawPeer::To("MetadataMgr");
  PlayRequests(viewer);
  Send(stateMgr_, "StateMgr", "record-started");
  Send(externalMgr, "ExternalMgr", "live-stream-on");
  for (const char* packet : {"stop-following", "bookmark", "record-start", "record-stop", "stream-state",
                             "camera-state", "microphone-state", "ping"}) {
    Send(viewer, "Viewer", packet);
  }
  Expect(viewer, "Viewer", "ping-answer");  // no notice of the second bookmark comes before it
  // Peers are served in turn, so an answer to one peer does not mean that another peer's message was handled.
  EXPECT_TRUE(Eventually([this] { return log_.Lines("LVSStateChangeHandler") == 1; })) << log_.Text();

  Send(stateMgr_, "StateMgr", "quit");
  ExpectRequests(stateMgr_, "StateMgr", 4, "leave-record-start");
  Expect(stateMgr_, "StateMgr", "shut-down");
  EXPECT_EQ(process.Wait(), 0);
  EXPECT_EQ(log_.Lines("ReportBookmark"), 2);
  EXPECT_EQ(log_.Lines("recordStart = 1"), 2);
  EXPECT_EQ(log_.Lines("recordStart = 0"), 1);
  for (const char* complaint : {"too short", "No handler", "Invalid", "malformed", "Dropped", "Refused"}) {
    EXPECT_EQ(log_.Lines(complaint), 0) << log_.Text();
  }
  EXPECT_EQ(document_.NotPlayed(), std::vector<std::string>{"failed-start"});
}

TEST_F(WireTest, PlaysTheFailedStart) {
  setenv("METADATA_ROOT", "/proc", 1);
  Child process({METADATAMGR});
  Start();
  Expect(stateMgr_, "StateMgr", "failed-start");
  EXPECT_EQ(process.Wait(), 1);
}

}  // namespace
