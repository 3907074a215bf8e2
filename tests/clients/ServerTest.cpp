#include <cerrno>
#include <chrono>

#include "ClientsFixture.h"
#include "clients/SubscribeServer.h"
#include "items/SystickItem.h"
#include "items/UShortItem.h"

namespace {

const std::string kSeven("\0\7", 2);

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

class ServerTest : public ClientsTest {
 protected:
  // Sends a request and lets the server handle it.
  void Ask(const RawPeer& peer, const std::string& packet) {
    ASSERT_EQ(peer.Send(packet), 0);
    ASSERT_EQ(Next(me_).result, 0);
  }

  Server server_{me_};
};

TEST_F(ServerTest, ValueAtSubscribeThenEveryChange) {
  const RawPeer peer = RawPeer::To("Me", "X");
  server_.Publish(5);
  Ask(peer, Request(0, 500));
  EXPECT_EQ(peer.Receive(0), Answer(0, 500, 0, U32(5)));
  server_.Publish(6);
  server_.Publish(6);
  EXPECT_EQ(peer.Receive(0), Packet(500, U32(6)));
  EXPECT_EQ(peer.Receive(0), Packet(500, U32(6)));

  Ask(peer, Request(0, 500));  // a repeated request is no second subscription
  Ask(peer, Request(0, 501));  // another id is a second one
  EXPECT_EQ(server_.Subscriptions(), 2U);
  EXPECT_EQ(peer.Receive(0), Answer(0, 500, 0, U32(6)));
  EXPECT_EQ(peer.Receive(0), Answer(0, 501, 0, U32(6)));
  server_.Publish(7);
  EXPECT_EQ(peer.Receive(0), Packet(500, U32(7)));
  EXPECT_EQ(peer.Receive(0), Packet(501, U32(7)));

  Ask(peer, Request(0, 502, kUnsubscribe));  // not its own subscription
  Ask(peer, Request(0, 500, kUnsubscribe));
  server_.Publish(8);
  EXPECT_EQ(peer.Receive(0), Packet(501, U32(8)));
  EXPECT_EQ(peer.Receive(0), std::nullopt);
}

TEST_F(ServerTest, AnswersWithoutSubscribing) {
  const RawPeer peer = RawPeer::To("Me", "X");
  const struct {
    const char* what;
    std::string request;
    std::string answer;  // empty: no answer
  } kCases[] = {
      {"value only", Request(1, 0), Answer(1, 0, 0, kSeven)},
      {"no such item", Request(2, 500), Answer(2, 500, ENOENT)},
      {"no such item, value only", Request(~0U, 0), Answer(~0U, 0, ENOENT)},
      {"more than is needed", Request(1, 0) + std::string(4000, 'x'), Answer(1, 0, 0, kSeven)},
      {"empty request", Packet(kSubscribe), ""},
      {"short request", Request(0, 500).substr(0, 11), ""},
      {"empty undoing", Packet(kUnsubscribe), ""},
      {"short undoing", Request(0, 500, kUnsubscribe).substr(0, 11), ""},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    Ask(peer, c.request);
    EXPECT_EQ(peer.Receive(0).value_or(""), c.answer);
    EXPECT_EQ(server_.Subscriptions(), 0U);
  }
  EXPECT_EQ(log_.Lines("Request from X is too short"), 1) << "and no other within the second";
}

// First the limit per subscriber, then the limit of all. A repeated subscription needs no room.
TEST_F(ServerTest, BoundedNumberOfSubscriptions) {
  std::vector<RawPeer> peers;
  const auto expect = [&](unsigned int id, const std::string& answer) {
    Ask(peers.back(), Request(1, id));
    EXPECT_EQ(peers.back().Receive(0), answer);
  };
  for (int peer = 0; peer < 8; ++peer) {
    peers.push_back(RawPeer::To("Me", "Greedy" + std::to_string(peer)));
    for (unsigned int id = 1; id <= 32; ++id) expect(id, Answer(1, id, 0, kSeven));
    expect(1000, Answer(1, 1000, ENOSPC));
    expect(1, Answer(1, 1, 0, kSeven));
  }
  EXPECT_EQ(server_.Subscriptions(), SubscribeServer::kMaxSubscriptions);
  peers.push_back(RawPeer::To("Me", "Late"));
  expect(1, Answer(1, 1, ENOSPC));
}

TEST_F(ServerTest, SubscriberThatEndsIsForgotten) {
  RawPeer peer = RawPeer::To("Me", "X");
  Ask(peer, Request(0, 500));
  Ask(peer, Request(1, 501));
  peer.Close();
  server_.Publish(1);  // to a closed peer, before the end is detected
  EXPECT_EQ(Next(me_, 0).result, ETIMEDOUT);
  EXPECT_EQ(server_.Subscriptions(), 0U);
}

// The successor sends its hello before all messages of the dead peer are read. A send to the dead peer may
// have failed before that.
TEST_F(ServerTest, RestartedSubscriberStartsAfresh) {
  for (const bool noticeToTheDead : {false, true}) {
    SCOPED_TRACE(noticeToTheDead);
    RawPeer dead = RawPeer::To("Me", "X");
    Ask(dead, Request(0, 500));
    for (int i = 0; i < 100; ++i) ASSERT_EQ(dead.Send(Packet(1)), 0);  // several turns
    dead.Close();
    if (noticeToTheDead) server_.Publish(1);
    const RawPeer successor = RawPeer::To("Me", "X");
    ASSERT_EQ(successor.Send(Request(1, 600)), 0);
    EXPECT_EQ(Drain(me_).size(), 101U);
    EXPECT_EQ(successor.Receive(0), Answer(1, 600, 0, kSeven));
    server_.Publish(2);
    EXPECT_EQ(successor.Receive(0), std::nullopt) << "nothing of what the dead one subscribed to";
    EXPECT_EQ(server_.Subscriptions(), 1U);
  }
}

TEST_F(ServerTest, SlowSubscriberLosesNoticesAndOnlyIt) {
  const RawPeer slow = RawPeer::To("Me", "Slow");
  const RawPeer quick = RawPeer::To("Me", "Quick");
  Ask(slow, Request(0, 500));
  Ask(quick, Request(0, 500));
  EXPECT_EQ(slow.Receive(0), Answer(0, 500, 0, U32(0)));
  EXPECT_EQ(quick.Receive(0), Answer(0, 500, 0, U32(0)));
  const auto begin = std::chrono::steady_clock::now();
  unsigned int published = 0;
  unsigned int taken[2] = {};  // messages queued without a read: the same each time
  for (unsigned int round = 0; round < 2; ++round) {
    const unsigned int before = published;
    while (server_.LostNotices() < 1000UL * (round + 1)) {
      server_.Publish(++published);
      ASSERT_EQ(quick.Receive(0), Packet(500, U32(published)));
      ASSERT_LT(published, 1'000'000U) << "the queue has no bound";
    }
    taken[round] = published - before - 1000;
    Ask(slow, Request(1, 0));

    // It receives the queued messages in order, then the answer.
    for (unsigned int expected = before + 1; expected <= before + taken[round]; ++expected) {
      std::optional<std::string> got = slow.Receive(0);
      if (!got) {
        EXPECT_EQ(Next(me_, 0).result, ETIMEDOUT);  // continues to send
        got = slow.Receive(0);
      }
      ASSERT_EQ(got, Packet(500, U32(expected)));
    }
    EXPECT_EQ(slow.Receive(0), Answer(1, 0, 0, kSeven));
  }
  EXPECT_NEAR(taken[0], taken[1], 100);
  server_.Publish(++published);
  EXPECT_EQ(slow.Receive(0), Packet(500, U32(published)));
  // One line a second. An emulated machine may take longer for both rounds.
  const bool withinASecond = std::chrono::steady_clock::now() - begin < std::chrono::seconds(1);
  for (const char* line : {"Slow is too slow, notices are lost", "Slow lost 1000 notices of item 0"}) {
    EXPECT_GE(log_.Lines(line), 1) << line;
    EXPECT_LE(log_.Lines(line), withinASecond ? 1 : 2) << line;
  }
}

}  // namespace
