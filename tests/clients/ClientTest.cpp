#include <cerrno>

#include "ClientsFixture.h"
#include "clients/ExternalMgrApi.h"
#include "clients/StateMgrClient.h"
#include "clients/StreamMgrApi.h"
#include "clients/SubscribeClient.h"
#include "items/SystickItem.h"
#include "support/Child.h"
#include "support/Hex.h"

namespace {

class ClientTest : public ClientsTest {
 protected:
  int Subscribe(unsigned int item, unsigned int notification) {
    return client_.Subscribe(item, notification, value_, Calls::Handler, &calls_);
  }

  SubscribeClient client_{me_, "Server", 300};
  SubscribeClient patient_{me_, "Server", 10000};
  SystickItem value_{111};
  Calls calls_;
};

// The test plays the server with raw packets.
class BareServerTest : public ClientTest {
 protected:
  void SetUp() override {
    ClientTest::SetUp();
    server_ = ComesUp("Server");
  }
  void ServerSays(const std::string& packet) { ASSERT_EQ(server_.Send(packet), 0); }

  RawPeer server_;
};

TEST_F(BareServerTest, SubscribesAndGetsChanges) {
  ServerSays(Packet(500, U32(1)));  // from an earlier subscription of the same name
  ServerSays(Answer(3, 500, 0, U32(2)));
  ServerSays(Packet(500, U32(3)));
  EXPECT_EQ(Subscribe(3, 500), 0);
  EXPECT_EQ(server_.Receive(0), Request(3, 500));
  EXPECT_EQ(value_.Tick(), 2U);
  EXPECT_TRUE(calls_.got.empty());
  EXPECT_EQ(Next(me_).payload, U32(1));
  EXPECT_EQ(Next(me_).payload, U32(3));
  EXPECT_EQ(calls_.got.size(), 2U);
}

TEST_F(BareServerTest, FailedSubscribeChangesNothing) {
  const struct {
    const char* what;
    std::vector<std::string> said;
    int expected;
  } kCases[] = {
      {"silence", {}, ETIMEDOUT},
      {"no such item", {Answer(3, 500, ENOENT)}, ENOENT},
      {"no room", {Answer(3, 500, ENOSPC)}, ENOSPC},
      {"no value", {Answer(3, 500, 0)}, EBADMSG},
      {"short value", {Answer(3, 500, 0, "abc")}, EBADMSG},
      {"no answers", {Packet(kAnswer), Packet(kAnswer, "x"), Answer(3, 500, 0).substr(0, 15)}, ETIMEDOUT},
      {"others' answers", {Answer(4, 500, 0, U32(1)), Answer(3, 501, 0, U32(1))}, ETIMEDOUT},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    for (const std::string& packet : c.said) ServerSays(packet);
    EXPECT_EQ(Subscribe(3, 500), c.expected);
    EXPECT_EQ(server_.Receive(0), Request(3, 500));
    EXPECT_EQ(server_.Receive(0), std::nullopt) << "asks once";
    EXPECT_EQ(value_.Tick(), 111U);
    ServerSays(Packet(500, U32(1)));
    EXPECT_EQ(Next(me_).type, 500U);
    EXPECT_TRUE(calls_.got.empty());
  }
  const RawPeer other = ComesUp("Other");
  ASSERT_EQ(other.Send(Answer(3, 500, 0, U32(1))), 0);
  EXPECT_EQ(Subscribe(3, 500), ETIMEDOUT) << "another process's answer";
  EXPECT_EQ(server_.Receive(0), Request(3, 500));
  EXPECT_EQ(client_.Resubscribe(), 0);
  EXPECT_EQ(server_.Receive(0), std::nullopt) << "there is nothing to renew";
}

TEST_F(BareServerTest, RenewalOnlySendsAndItsAnswersAreSwallowed) {
  for (const unsigned int item : {3U, 4U, 3U}) {  // the last replaces the first
    ServerSays(Answer(item, 500 + item, 0, U32(item)));
    ASSERT_EQ(Subscribe(item, 500 + item), 0);
    ASSERT_TRUE(server_.Receive(0));
  }
  const Stopwatch watch;
  EXPECT_EQ(client_.Resubscribe(), 0);
  EXPECT_LT(watch.Ms(), 2000) << "nothing is waited for";
  EXPECT_EQ(server_.Receive(0), Request(3, 503));
  EXPECT_EQ(server_.Receive(0), Request(4, 504));
  EXPECT_EQ(server_.Receive(0), std::nullopt);
  for (int renewals = 1; renewals <= 2; ++renewals) {
    ServerSays(Answer(3, 503, ENOENT));
    ServerSays(Answer(4, 504, ENOENT));
    EXPECT_EQ(Next(me_).type, kAnswer);
    EXPECT_EQ(Next(me_).type, kAnswer);
    EXPECT_EQ(log_.Lines("FAILED to resubsribe to a server"), renewals) << "once each, whatever is refused";
    EXPECT_EQ(client_.Resubscribe(), 0);
  }
  const std::string before = log_.Text();
  ServerSays(Answer(3, 503, 0, U32(30)));
  EXPECT_EQ(Next(me_).type, kAnswer);
  EXPECT_EQ(log_.Text(), before);
  EXPECT_TRUE(calls_.got.empty());
  server_.Close();
  listeners_.clear();
  EXPECT_EQ(client_.Resubscribe(), ENOENT);
}

// Which notices reach the handler of a subscription.
TEST_F(BareServerTest, OnlyWholeNoticesOfTheServerCount) {
  ServerSays(Answer(3, 500, 0, U32(1)));
  ASSERT_EQ(Subscribe(3, 500), 0);
  const RawPeer other = ComesUp("Other");
  ServerSays(Packet(500, "abc"));
  EXPECT_EQ(Next(me_).payload, "abc");
  EXPECT_EQ(log_.Lines("Dropped notice 500 from Server: payload is too short for its item"), 1);
  ASSERT_EQ(other.Send(Packet(500, U32(2))), 0);
  EXPECT_EQ(Next(me_).payload, U32(2));
  EXPECT_EQ(log_.Lines("Dropped notice 500 from Other: it is Server's"), 1);
  EXPECT_TRUE(calls_.got.empty());
  for (const std::string& payload : {std::string(), U32(3), U32(4) + "more"}) {
    ServerSays(Packet(500, payload));
    EXPECT_EQ(Next(me_).payload, payload);
    ASSERT_FALSE(calls_.got.empty());
    EXPECT_EQ(calls_.got.back().payload, payload);
  }
}

// The values of the state manager and of live streams are not used, so any content is accepted.
TEST_F(ClientTest, ValuesThatAreNotUsedMayBeMissing) {
  for (const char* value : {"", "ab"}) {
    StateMgrClient stateMgr(me_, 300);
    ExternalMgrApi externalMgr(me_, "ExternalMgr", 300);
    const RawPeer events = ComesUp("StateMgr");
    const RawPeer streams = ComesUp("ExternalMgr");
    ASSERT_EQ(events.Send(Answer(StateMgrClient::kRecordStart, 600, 0, value)), 0);
    EXPECT_TRUE(stateMgr.SubscribeForRecordStart(600, Calls::Handler, &calls_)) << value;
    ASSERT_EQ(streams.Send(Answer(16, 700, 0, value)), 0);
    EXPECT_EQ(externalMgr.Subscribe(16, 700, value_, Calls::Handler, &calls_), 0) << value;
    EXPECT_EQ(value_.Tick(), 111U);
    // On, not high quality, camera 2, truncated address.
    ASSERT_EQ(streams.Send(Packet(700, FromHex("01 00 0002 0008 3130"))), 0);
    (void)Next(me_);
    EXPECT_TRUE(calls_.got.empty());
    listeners_.clear();
  }
}

// A waiting quit notice or a signal ends the wait for a server that is silent or missing.
TEST_F(ClientTest, AShutdownEndsTheWaitForAServer) {
  const RawPeer quitter = ComesUp("Quitter");
  for (const bool silent : {false, true}) {
    if (silent) listeners_.push_back(std::make_unique<RawListener>("Server"));
    ASSERT_EQ(quitter.Send(Packet(LinxIpc::kShutdownNotice)), 0);
    const Stopwatch watch;
    EXPECT_EQ(patient_.Subscribe(3, 500, value_, Calls::Handler, &calls_), ESHUTDOWN);
    EXPECT_EQ(StreamMgrApi::CurrentlyRecordingREID(me_, 10000), "");
    EXPECT_LT(watch.Ms(), 1000);
    EXPECT_EQ(Next(me_).result, ESHUTDOWN) << "it is still there";
  }
  const RawPeer server = ComesUp("Server");
  ASSERT_EQ(server.Send(Answer(3, 500, 0, U32(7))), 0);
  EXPECT_EQ(Subscribe(3, 500), 0) << "a shutdown that was met cuts nothing";
}

// A process that only claims the name first does not get the subscription.
TEST_F(ClientTest, OnlyTheProcessThatListensIsAServer) {
  Child impostor([] {
    const RawPeer peer = RawPeer::To("Me", "Server");
    (void)peer.Send(Packet(1));
    (void)peer.Send(Answer(3, 500, 0, U32(666)));
    return peer.Closed(20000) ? 0 : 1;
  });
  ASSERT_EQ(Next(me_).sender, "Server");
  EXPECT_EQ(Subscribe(3, 500), ETIMEDOUT) << "nobody listens";
  const RawListener listener("Server");
  Child server([&listener] {
    const RawPeer client = listener.Accept();
    if (client.Receive() != HelloPacket("Me") || client.Receive() != Request(3, 500)) return 1;
    return client.Send(Answer(3, 500, 0, U32(7)));
  });
  EXPECT_EQ(patient_.Subscribe(3, 500, value_, Calls::Handler, &calls_), 0);
  EXPECT_EQ(value_.Tick(), 7U);
  EXPECT_EQ(impostor.Wait(), 0);
  EXPECT_EQ(server.Wait(), 0);
}

TEST_F(BareServerTest, UnsubscribeAllTellsAndForgets) {
  ServerSays(Answer(3, 500, 0, U32(1)));
  ASSERT_EQ(Subscribe(3, 500), 0);
  ASSERT_TRUE(server_.Receive(0));
  client_.UnsubscribeAll(true);
  EXPECT_EQ(server_.Receive(0), Request(3, 500, kUnsubscribe));
  ServerSays(Packet(500, U32(2)));
  EXPECT_EQ(Next(me_).type, 500U);
  EXPECT_TRUE(calls_.got.empty());
  client_.UnsubscribeAll(true);
  EXPECT_EQ(server_.Receive(0), std::nullopt);
}

// ---- Against a server in another process

// The name stays connected, but over a new connection.
TEST_F(ClientTest, SuccessorThatConnectsItselfIsAsked) {
  Child server([] {
    {
      const RawListener listener("Server");
      const RawPeer client = listener.Accept();
      if (client.Receive() != HelloPacket("Me") || client.Receive() != Request(5, 505)) return 1;
    }
    const RawListener listener("Server");
    const RawPeer successor = RawPeer::To("Me", "Server");
    if (successor.Receive() != Request(5, 505)) return 2;
    return successor.Send(Answer(5, 505, 0, U32(55)));
  });
  const Stopwatch watch;
  EXPECT_EQ(patient_.Subscribe(5, 505, value_, Calls::Handler, &calls_), 0);
  EXPECT_LT(watch.Ms(), 5000);
  EXPECT_EQ(value_.Tick(), 55U);
  EXPECT_EQ(server.Wait(), 0);
}

}  // namespace
