#include <unistd.h>

#include <cerrno>
#include <memory>

#include "support/Child.h"
#include "support/IpcTest.h"

namespace {

constexpr std::uint32_t kHello = 0x4C494E58;

class HostileTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(me_.Init(), 0); }

  // Checks that a new well-behaved peer is served.
  void ExpectAlive() {
    const RawPeer good = RawPeer::To("Me", "Good");
    ASSERT_EQ(good.Send(Packet(1, "alive")), 0);
    EXPECT_EQ(Await(me_, 1, "Good").payload, "alive");
  }

  IpcDir directory_;
  LogCapture log_;
  LinxIpc me_{"Me"};
};

TEST(Hostile, ConnectionsThatDoNotBeginWellAreClosed) {
  const char* noHello = "it did not begin with a hello";
  const char* noName = "invalid name";
  const struct {
    const char* what;
    std::string packet;
    const char* why;
  } kCases[] = {
      {"one byte", "x", noHello},
      {"a message", Packet(1, "x"), noHello},
      {"too long", Packet(kHello, std::string(5000, 'n')), noHello},
      {"nothing behind the type", Packet(kHello), "another version of the protocol"},
      {"another version", Packet(kHello, "\x02Name"), "another version of the protocol"},
      {"no name", HelloPacket(""), noName},
      {"33 bytes", HelloPacket(std::string(33, 'n')), noName},
      {"a path", HelloPacket("../../etc/x"), noName},
      {"a NUL behind it", HelloPacket(std::string("A\0", 2)), noName},
      {"a line end", HelloPacket("A\nB"), noName},
      {"the endpoint's own", HelloPacket("Me"), noName},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    const IpcDir directory;
    const LogCapture log;
    LinxIpc me("Me");
    ASSERT_EQ(me.Init(), 0);
    const RawPeer hostile = RawPeer::To("Me");
    ASSERT_EQ(hostile.Send(c.packet), 0);
    const RawPeer good = RawPeer::To("Me", "Good");
    ASSERT_EQ(good.Send(Packet(1, "alive")), 0);
    EXPECT_EQ(Next(me).payload, "alive");
    EXPECT_TRUE(hostile.Closed());
    EXPECT_EQ(log.Lines("Refused a connection of process " + std::to_string(getpid()) + ", user " +
                        std::to_string(geteuid()) + ": " + c.why),
              1);
  }
}

TEST_F(HostileTest, PacketsThatAreNoMessagesAreDropped) {
  const RawPeer peer = RawPeer::To("Me", "Peer");
  for (const std::string& packet :
       {std::string("x"), std::string("xyz"), Packet(1, std::string(4097, 'x')), HelloPacket("Other")}) {
    ASSERT_EQ(peer.Send(packet), 0);
  }
  ASSERT_EQ(peer.Send(Packet(1, std::string(4096, 'x'))), 0);
  EXPECT_EQ(Next(me_).payload.size(), 4096U) << "the longest that is one";
  EXPECT_EQ(me_.CurrentMessage().GetSender(), "Peer");
  EXPECT_EQ(log_.Lines("Dropped a packet from Peer: too short"), 1) << "and no other within the second";
  EXPECT_EQ(log_.Lines("Dropped a packet"), 1);
}

TEST_F(HostileTest, WhoSendsAnEmptyPacketIsCutOff) {
  const RawPeer silent = RawPeer::To("Me");
  const RawPeer named = RawPeer::To("Me", "Named");
  for (const RawPeer* peer : {&silent, &named}) ASSERT_EQ(peer->Send(""), 0);
  ExpectAlive();
  for (const RawPeer* peer : {&silent, &named}) EXPECT_TRUE(peer->Closed());
}

// In a full table the process with the most connections loses one, silent connections first. The same happens
// when this process connects.
TEST_F(HostileTest, OneProcessCannotKeepOthersOut) {
  const RawPeer early = RawPeer::To("Me", "Early");
  ASSERT_EQ(early.Send(Packet(1, "hello")), 0);
  ASSERT_EQ(Next(me_).payload, "hello");
  std::vector<RawPeer> silent;
  for (int i = 0; i < 300; ++i) {
    silent.push_back(RawPeer::To("Me"));
    if (i % 8 == 7) (void)Next(me_, 0);
    ASSERT_TRUE(silent.back().Connected()) << i;
  }
  EXPECT_TRUE(silent.front().Closed()) << "the oldest goes";
  EXPECT_FALSE(silent.back().Closed());
  std::vector<RawPeer> named;
  for (int i = 0; i < 127; ++i) {
    named.push_back(RawPeer::To("Me", "Peer" + std::to_string(i)));
    ASSERT_EQ(named.back().Send(Packet(1, "in")), 0);
    ASSERT_EQ(Next(me_).payload, "in");
  }
  ASSERT_EQ(early.Send(Packet(1, "still here")), 0);
  EXPECT_EQ(Next(me_).payload, "still here");
  const RawPeer late = RawPeer::To("Me", "Late");
  ASSERT_EQ(late.Send(Packet(1, "alive")), 0);
  EXPECT_EQ(Next(me_).payload, "alive");
  EXPECT_TRUE(early.Closed()) << "the oldest with a name";
  const RawListener server("Server");
  EXPECT_EQ(Tell(me_, "Server", 1), 0);
  EXPECT_TRUE(named[0].Closed());
  EXPECT_EQ(log_.Lines("Closed a connection of Early, process " + std::to_string(getpid()) +
                       ": another one needs its place"),
            1);
  ASSERT_EQ(named[77].Send(Packet(1, "not disturbed")), 0);
  EXPECT_EQ(Next(me_).payload, "not disturbed");
}

// Eight processes fill the table, each with its fair share.
TEST_F(HostileTest, FullTable) {
  int end[2];
  ASSERT_EQ(pipe(end), 0);
  std::vector<std::unique_ptr<Child>> processes;
  processes.reserve(8);
  for (int process = 0; process < 8; ++process) {
    processes.push_back(std::make_unique<Child>([&end, process] {
      close(end[1]);
      std::vector<RawPeer> peers(16);
      for (RawPeer& peer : peers) {
        const std::string name = "P" + std::to_string(process) + "-" + std::to_string(&peer - peers.data());
        if (!Eventually([&] { return (peer = RawPeer::To("Me", name)).Connected(); })) return 1;
        (void)peer.Send(Packet(1, "in"));
      }
      char none = 0;
      return static_cast<int>(read(end[0], &none, 1));
    }));
  }
  for (int i = 0; i < 128; ++i) ASSERT_EQ(Next(me_).payload, "in");
  const RawPeer late = RawPeer::To("Me", "Late");
  const RawListener server("Server");
  EXPECT_EQ(Next(me_, 20).result, ETIMEDOUT);
  EXPECT_TRUE(late.Closed());
  EXPECT_EQ(Tell(me_, "Server", 1), EMFILE);
  for (const int fd : end) close(fd);
  for (const auto& process : processes) EXPECT_EQ(process->Wait(), 0);
  ExpectAlive();
}

// Dead peers fill the table. They left more messages than a selective wait reads.
TEST_F(HostileTest, TheDeadMakeRoomFirst) {
  const auto connect = [this](const std::string& name) {
    RawPeer peer = RawPeer::To("Me", name);
    for (; !peer.Connected(); peer = RawPeer::To("Me", name)) (void)Await(me_, 2, "Good", 1);
    return peer;
  };
  for (int i = 0; i < 140; ++i) {
    const RawPeer dead = connect("Dead" + std::to_string(i));
    while (dead.Send(Packet(1, std::string(1000, 'x'))) == 0) {
    }
  }
  const RawPeer good = connect("Good");
  ASSERT_EQ(good.Send(Packet(2, "alive")), 0);
  EXPECT_EQ(Await(me_, 2, "Good").payload, "alive");
  EXPECT_GE(log_.Lines(", which is gone: no room for what it had sent"), 1);
}

// This process has connected to "A". Another process cannot take that name.
TEST_F(HostileTest, NobodyElseTakesTheNameOfAConnectedServer) {
  const RawListener a("A");
  ASSERT_EQ(Tell(me_, "A", 5), 0);
  Child impostor([] {
    const RawPeer peer = RawPeer::To("Me", "A");
    (void)peer.Send(Packet(LinxIpc::kShutdownNotice));
    return peer.Closed(20000) ? 0 : 1;
  });
  EXPECT_EQ(Next(me_, 200).result, ETIMEDOUT);
  EXPECT_EQ(impostor.Wait(), 0);
  const RawPeer itself = RawPeer::To("Me", "A");  // the listener's process
  ASSERT_EQ(itself.Send(Packet(1, "both ways")), 0);
  EXPECT_EQ(Next(me_).payload, "both ways");
}

// A name belongs to one connection while that is open. Then the peer dies with messages under way in both
// directions, and its successor connects before they are read.
TEST_F(HostileTest, RestartedPeerAndWhatItsPredecessorSent) {
  RawPeer dead = RawPeer::To("Me", "X");
  ASSERT_EQ(dead.Send(Packet(1, "0")), 0);
  ASSERT_EQ(Next(me_).payload, "0");
  const RawPeer rival = RawPeer::To("Me", "X");
  ASSERT_EQ(rival.Send(Packet(1, "of another")), 0);
  EXPECT_EQ(Next(me_, 50).result, ETIMEDOUT);
  EXPECT_TRUE(rival.Closed());
  EXPECT_EQ(log_.Lines("its name is in use"), 1);
  ASSERT_EQ(Tell(me_, "X", 5, "never read"), 0);
  std::vector<std::string> expected;
  for (int i = 1; i <= 100; ++i) {  // several turns
    expected.push_back(std::to_string(i));
    ASSERT_EQ(dead.Send(Packet(1, expected.back())), 0);
  }
  dead.Close();
  const RawPeer successor = RawPeer::To("Me", "X");
  ASSERT_EQ(successor.Send(Packet(1, "new")), 0);
  std::vector<std::string> got = Drain(me_);
  EXPECT_EQ(std::erase(got, "new"), 1U);
  EXPECT_EQ(got, expected);
  ASSERT_EQ(Tell(me_, "X", 5, "to the successor"), 0);
  EXPECT_EQ(successor.Receive(0), Packet(5, "to the successor"));
}

}  // namespace
