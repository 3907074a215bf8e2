#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <set>

#include "support/IpcTest.h"

namespace {

TEST_F(IpcTest, NobodyThere) {
  EXPECT_EQ(Tell(me_, "Nobody", 1), ENOENT);
  {
    const RawListener dead("Dead");
    ASSERT_EQ(std::rename(IpcDir::File("Dead").c_str(), IpcDir::File("Stale").c_str()), 0);
  }
  EXPECT_EQ(Tell(me_, "Stale", 1), ECONNREFUSED);
  for (const char* name : {"", "Me", "a/b", "../A"}) EXPECT_EQ(Tell(me_, name, 1), EINVAL) << name;
}

TEST_F(IpcTest, RestartedPeerIsReachedByTheNextMessage) {
  auto first = std::make_unique<LinxIpc>("B");
  ASSERT_EQ(first->Init(), 0);
  ASSERT_EQ(Tell(me_, "B", 1, "one"), 0);
  ASSERT_EQ(Next(*first).payload, "one");
  first.reset();
  EXPECT_EQ(Tell(me_, "B", 1, "lost"), ENOENT);
  LinxIpc second("B");
  ASSERT_EQ(second.Init(), 0);
  EXPECT_EQ(Tell(me_, "B", 1, "two"), 0);
  EXPECT_EQ(Next(second).payload, "two");
}

// A full peer costs one short wait, then no wait until it has read a message.
TEST_F(IpcTest, PeerThatDoesNotRead) {
  const RawListener listener("Slow");
  std::vector<std::string> accepted;
  const auto fill = [&](bool wait) {
    for (;;) {
      const std::string payload = std::to_string(accepted.size());
      const int result = Tell(me_, "Slow", 1, payload, wait);
      if (result != 0) return result;
      accepted.push_back(Packet(1, payload));
    }
  };
  Stopwatch notWaiting;
  EXPECT_EQ(fill(false), EAGAIN);
  const RawPeer slow = listener.Accept();
  ASSERT_EQ(slow.Receive(), HelloPacket("Me"));

  for (int round = 0; round < 2; ++round) {
    Stopwatch first;
    EXPECT_EQ(fill(true), EAGAIN);
    EXPECT_GE(first.Ms(), 10);
    EXPECT_LT(first.Ms(), 1000);
    Stopwatch later;
    for (int i = 0; i < 1000; ++i) EXPECT_EQ(Tell(me_, "Slow", 1, "no", true), EAGAIN);
    EXPECT_LT(later.Ms(), 1000) << "would be 10000";
    for (const std::string& packet : accepted) ASSERT_EQ(slow.Receive(0), packet);
    EXPECT_EQ(slow.Receive(0), std::nullopt);
    accepted.clear();
  }
}

// Sends numbered messages until the endpoint accepts no more.
class Flooder {
 public:
  explicit Flooder(const std::string& name) : peer_(RawPeer::To("Me", name)) {}

  // Returns the number of accepted messages.
  int Flood() {
    const int before = sent_;
    while (peer_.Send(Packet(1, Payload(sent_))) == 0) ++sent_;
    return sent_ - before;
  }
  int Sent() const { return sent_; }
  static std::string Payload(int i) { return std::to_string(i).append(1000, '.'); }

 private:
  RawPeer peer_;
  int sent_ = 0;
};

// When the messages of a peer take long, each turn serves only one of them.
TEST_F(IpcTest, SlowMessagesShortenTheTurn) {
  me_.RegisterHandler(
      1,
      [](LinxIpc*, void*) {
        for (const Stopwatch watch; watch.Ms() < 30;) {
        }
      },
      nullptr);
  Flooder flooder("Flooder");
  const RawPeer quiet = RawPeer::To("Me", "Quiet");
  ASSERT_EQ(quiet.Send(Packet(2, "hello")), 0);
  EXPECT_EQ(Next(me_).sender, "Quiet");
  flooder.Flood();
  for (int round = 0; round < 3; ++round) {
    EXPECT_EQ(Next(me_).sender, "Flooder");
    ASSERT_EQ(quiet.Send(Packet(2, "ping")), 0);
    int others = 0;
    while (Next(me_).sender != "Quiet") ++others;
    EXPECT_LE(others, 1);
  }
}

TEST_F(IpcTest, TenFloodingPeersDelayOthersByOneTurnOfAll) {
  std::vector<std::unique_ptr<Flooder>> flooders;
  flooders.reserve(10);
  for (int i = 0; i < 10; ++i) flooders.push_back(std::make_unique<Flooder>("Flooder" + std::to_string(i)));
  const RawPeer quiet = RawPeer::To("Me", "Quiet");
  ASSERT_EQ(quiet.Send(Packet(2, "hello")), 0);
  while (Next(me_).sender != "Quiet") {
  }
  for (int round = 0; round < 20; ++round) {
    for (const auto& flooder : flooders) flooder->Flood();
    EXPECT_EQ(Next(me_).sender.substr(0, 7), "Flooder");
    ASSERT_EQ(quiet.Send(Packet(2, "ping")), 0);
    int others = 0;
    while (Next(me_).sender != "Quiet") ++others;
    EXPECT_LE(others, 2 * 10 * 16) << "what is left of their turn, and one";
  }
}

// Copies take long. Between two copies the messages of all other peers are handled.
TEST_F(IpcTest, BetweenTwoCopiesEverybodyElseHasATurn) {
  constexpr unsigned int kCopy = 13490;
  constexpr int kCopies = 8;
  std::vector<RawPeer> askers;
  for (int i = 0; i < kCopies / 2; ++i) {
    askers.push_back(RawPeer::To("Me", "Asker" + std::to_string(i)));
    for (const char* which : {"first", "second"}) ASSERT_EQ(askers.back().Send(Packet(kCopy, which)), 0);
    ASSERT_EQ(askers.back().Send(Packet(3, "behind them")), 0);
  }
  const RawPeer quiet = RawPeer::To("Me", "Quiet");
  std::vector<std::string> copied;
  for (int copies = 0; copies < kCopies;) {
    const Got got = Next(me_);
    if (got.type != kCopy) continue;
    ++copies;
    copied.push_back(got.sender + got.payload);
    for (int i = 0; i < 3; ++i) ASSERT_EQ(quiet.Send(Packet(2, "meanwhile")), 0);
    for (int others = 0; others < 3;) {
      const Got next = Next(me_);
      ASSERT_NE(next.type, kCopy);
      if (next.type == 2) ++others;
    }
  }
  EXPECT_EQ(std::set<std::string>(copied.begin(), copied.end()).size(), static_cast<std::size_t>(kCopies));
  for (int i = 0; i < kCopies / 2; ++i) {
    const std::string asker = "Asker" + std::to_string(i);
    EXPECT_LT(std::find(copied.begin(), copied.end(), asker + "first"),
              std::find(copied.begin(), copied.end(), asker + "second"));
  }
}

// A selective wait queues other messages up to a bound; then the sending peer must wait. No message is lost
// or reordered.
TEST_F(IpcTest, SelectiveWaitPushesBackOnWhoFloods) {
  const struct {
    const char* what;
    const char* awaited;
    int least;  // accepted messages of 1 KB
    int most;
  } kCases[] = {{"another", "A", 50, 400}, {"itself", "Flooder", 8000, 18000}};
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    Flooder flooder("Flooder");
    while (flooder.Flood() > 0) ASSERT_EQ(Await(me_, 9, c.awaited, 20).result, ETIMEDOUT);
    EXPECT_GE(flooder.Sent(), c.least);
    EXPECT_LE(flooder.Sent(), c.most);
    ASSERT_EQ(Tell(a_, "Me", 9, "wanted"), 0);
    EXPECT_EQ(Await(me_, 9, "A").payload, "wanted");
    for (int i = 0; i < flooder.Sent(); ++i) {
      ASSERT_EQ(Next(me_).payload, Flooder::Payload(i));
      if (i % 100 == 99 && i < 2000) flooder.Flood();
    }
  }
}

}  // namespace
