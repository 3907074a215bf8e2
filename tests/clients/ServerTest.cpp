#include <cerrno>
#include <memory>
#include <random>

#include "clients/SubscribeServer.h"
#include "items/SystickItem.h"
#include "items/UShortItem.h"
#include "support/IpcTest.h"

namespace {

constexpr unsigned int kSubscribe = 1856;
constexpr unsigned int kAnswer = 1857;
constexpr unsigned int kUnsubscribe = 1858;

std::string Request(unsigned int type, unsigned int item, unsigned int notification) {
  return Packet(type, U32(item) + U32(notification));
}

std::string Answer(unsigned int item, unsigned int notification, unsigned int result,
                   const std::string& value = {}) {
  return Packet(kAnswer, U32(item) + U32(notification) + U32(result) + value);
}

// Serves item 0, a tick, and item 1, always 7.
class Server : public SubscribeServer {
 public:
  using SubscribeServer::SubscribeServer;

  void GetItem(unsigned int itemId, IpcMessage& reply, unsigned int messageType) override {
    const SystickItem tick(value_);
    const UShortItem seven(7);
    if (itemId > 1) return;
    const Item& item = itemId == 0 ? static_cast<const Item&>(tick) : seven;
    ASSERT_EQ(reply.Allocate(messageType, item.Size(), nullptr), 0);
    EXPECT_TRUE(item.EncodeMsg(reply));
  }
  void Publish(unsigned int tick) {
    value_ = tick;
    SystickItem item(tick);
    NotifySubscribers(0, item);
  }

 private:
  unsigned int value_ = 0;
};

class ServerTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(me_.Init(), 0); }

  // Sends a request and lets the server handle it.
  void Ask(const RawPeer& peer, const std::string& packet) {
    ASSERT_EQ(peer.Send(packet), 0);
    ASSERT_EQ(Next(me_).result, 0);
  }

  IpcDir directory_;
  LogCapture log_;
  LinxIpc me_{"Me"};
  Server server_{me_};
};

TEST_F(ServerTest, ValueAtSubscribeThenEveryChange) {
  const RawPeer peer = RawPeer::To("Me", "X");
  server_.Publish(5);
  Ask(peer, Request(kSubscribe, 0, 500));
  EXPECT_EQ(peer.Receive(0), Answer(0, 500, 0, U32(5)));
  server_.Publish(6);
  server_.Publish(6);
  EXPECT_EQ(peer.Receive(0), Packet(500, U32(6)));
  EXPECT_EQ(peer.Receive(0), Packet(500, U32(6)));

  Ask(peer, Request(kSubscribe, 0, 500));  // once more is no second subscription
  Ask(peer, Request(kSubscribe, 0, 501));  // another id is
  EXPECT_EQ(server_.Subscriptions(), 2U);
  EXPECT_EQ(peer.Receive(0), Answer(0, 500, 0, U32(6)));
  EXPECT_EQ(peer.Receive(0), Answer(0, 501, 0, U32(6)));
  server_.Publish(7);
  EXPECT_EQ(peer.Receive(0), Packet(500, U32(7)));
  EXPECT_EQ(peer.Receive(0), Packet(501, U32(7)));

  Ask(peer, Request(kUnsubscribe, 0, 502));  // not one of its own
  Ask(peer, Request(kUnsubscribe, 0, 500));
  server_.Publish(8);
  EXPECT_EQ(peer.Receive(0), Packet(501, U32(8)));
  EXPECT_EQ(peer.Receive(0), std::nullopt);
}

TEST_F(ServerTest, AnswersWithoutSubscribing) {
  const RawPeer peer = RawPeer::To("Me", "X");
  const struct {
    const char* what;
    std::string request;
    std::string answer;  // empty: none
  } kCases[] = {
      {"value only", Request(kSubscribe, 1, 0), Answer(1, 0, 0, std::string("\0\7", 2))},
      {"no such item", Request(kSubscribe, 2, 500), Answer(2, 500, ENOENT)},
      {"no such item, value only", Request(kSubscribe, ~0U, 0), Answer(~0U, 0, ENOENT)},
      {"more than is needed", Request(kSubscribe, 1, 0) + std::string(4000, 'x'),
       Answer(1, 0, 0, std::string("\0\7", 2))},
      {"empty request", Packet(kSubscribe), ""},
      {"short request", Request(kSubscribe, 0, 500).substr(0, 11), ""},
      {"empty undoing", Packet(kUnsubscribe), ""},
      {"short undoing", Request(kUnsubscribe, 0, 500).substr(0, 11), ""},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    Ask(peer, c.request);
    EXPECT_EQ(peer.Receive(0).value_or(""), c.answer);
    EXPECT_EQ(server_.Subscriptions(), 0U);
  }
  EXPECT_EQ(log_.Lines("Request from X is too short"), 1) << "and no other within the second";
}

// Each of one subscriber, then of all; one that it has already needs no room.
TEST_F(ServerTest, BoundedNumberOfSubscriptions) {
  const std::string value("\0\7", 2);
  std::vector<RawPeer> peers;
  const auto expect = [&](unsigned int id, const std::string& answer) {
    Ask(peers.back(), Request(kSubscribe, 1, id));
    EXPECT_EQ(peers.back().Receive(0), answer);
  };
  for (int peer = 0; peer < 8; ++peer) {
    peers.push_back(RawPeer::To("Me", "Greedy" + std::to_string(peer)));
    for (unsigned int id = 1; id <= 32; ++id) expect(id, Answer(1, id, 0, value));
    expect(1000, Answer(1, 1000, ENOSPC));
    expect(1, Answer(1, 1, 0, value));
  }
  EXPECT_EQ(server_.Subscriptions(), SubscribeServer::kMaxSubscriptions);
  peers.push_back(RawPeer::To("Me", "Late"));
  expect(1, Answer(1, 1, ENOSPC));
}

TEST_F(ServerTest, SubscriberThatEndsIsForgotten) {
  RawPeer peer = RawPeer::To("Me", "X");
  Ask(peer, Request(kSubscribe, 0, 500));
  Ask(peer, Request(kSubscribe, 1, 501));
  peer.Close();
  server_.Publish(1);  // to nobody, before the end is noticed
  EXPECT_EQ(Next(me_, 0).result, ETIMEDOUT);
  EXPECT_EQ(server_.Subscriptions(), 0U);
}

// The successor says hello before everything that the dead one sent is read; before that a send to
// the dead one may have failed already.
TEST_F(ServerTest, RestartedSubscriberStartsAfresh) {
  for (const bool noticeToTheDead : {false, true}) {
    SCOPED_TRACE(noticeToTheDead);
    RawPeer dead = RawPeer::To("Me", "X");
    Ask(dead, Request(kSubscribe, 0, 500));
    for (int i = 0; i < 100; ++i) ASSERT_EQ(dead.Send(Packet(1)), 0);  // several turns
    dead.Close();
    if (noticeToTheDead) server_.Publish(1);
    const RawPeer successor = RawPeer::To("Me", "X");
    ASSERT_EQ(successor.Send(Request(kSubscribe, 1, 600)), 0);
    EXPECT_EQ(Drain(me_).size(), 101U);
    EXPECT_EQ(successor.Receive(0), Answer(1, 600, 0, std::string("\0\7", 2)));
    server_.Publish(2);
    EXPECT_EQ(successor.Receive(0), std::nullopt) << "nothing of what the dead one subscribed to";
    EXPECT_EQ(server_.Subscriptions(), 1U);
  }
}

TEST_F(ServerTest, SlowSubscriberLosesNoticesAndOnlyIt) {
  const RawPeer slow = RawPeer::To("Me", "Slow");
  const RawPeer quick = RawPeer::To("Me", "Quick");
  Ask(slow, Request(kSubscribe, 0, 500));
  Ask(quick, Request(kSubscribe, 0, 500));
  EXPECT_EQ(slow.Receive(0), Answer(0, 500, 0, U32(0)));
  EXPECT_EQ(quick.Receive(0), Answer(0, 500, 0, U32(0)));
  unsigned int published = 0;
  unsigned int taken[2] = {};  // how many it took without reading: the same every time
  for (unsigned int round = 0; round < 2; ++round) {
    const unsigned int before = published;
    while (server_.LostNotices() < 1000UL * (round + 1)) {
      server_.Publish(++published);
      ASSERT_EQ(quick.Receive(0), Packet(500, U32(published)));
      ASSERT_LT(published, 100000U) << "the queue has no bound";
    }
    taken[round] = published - before - 1000;
    Ask(slow, Request(kSubscribe, 1, 0));

    // It gets what was queued, in order, and the answer behind it.
    for (unsigned int expected = before + 1; expected <= before + taken[round]; ++expected) {
      std::optional<std::string> got = slow.Receive(0);
      if (!got) {
        EXPECT_EQ(Next(me_, 0).result, ETIMEDOUT);  // sends on
        got = slow.Receive(0);
      }
      ASSERT_EQ(got, Packet(500, U32(expected)));
    }
    EXPECT_EQ(slow.Receive(0), Answer(1, 0, 0, std::string("\0\7", 2)));
  }
  EXPECT_NEAR(taken[0], taken[1], 100);
  EXPECT_EQ(log_.Lines("Slow is too slow, notices are lost"), 1) << "and no other within the second";
  server_.Publish(++published);
  EXPECT_EQ(slow.Receive(0), Packet(500, U32(published)));
  EXPECT_EQ(log_.Lines("Slow lost 1000 notices of item 0"), 1);
}

TEST_F(ServerTest, AnyRequests) {
  std::mt19937 random(1);
  const auto below = [&random](unsigned int end) { return static_cast<unsigned int>(random()) % end; };
  std::vector<RawPeer> peers(4);
  for (int step = 0; step < 5000; ++step) {
    const unsigned int which = below(4);
    RawPeer& peer = peers[which];
    if (below(50) == 0 || !peer.Connected()) {
      peer.Close();
      (void)Next(me_, 0);
      peer = RawPeer::To("Me", "P" + std::to_string(which));
    }
    const std::string request = Request(kSubscribe + below(3), below(3), below(4) == 0 ? 0 : below(100));
    (void)peer.Send(request.substr(0, below(10) == 0 ? below(13) : 12));
    if (below(3) == 0) (void)peer.Receive(0);
    if (below(3) == 0) server_.Publish(static_cast<unsigned int>(step));
    (void)Next(me_, 0);
    ASSERT_LE(server_.Subscriptions(), SubscribeServer::kMaxSubscriptions);
  }
  peers.clear();
  (void)Drain(me_);
  EXPECT_EQ(server_.Subscriptions(), 0U);
}

TEST(Server, MayOutliveItsEndpoint) {
  const IpcDir directory;
  auto me = std::make_unique<LinxIpc>("Me");
  ASSERT_EQ(me->Init(), 0);
  const Server server(*me);
  me.reset();
}

}  // namespace
