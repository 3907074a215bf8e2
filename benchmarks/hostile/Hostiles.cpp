#include "Hostiles.h"

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <string>
#include <vector>

#include "Victim.h"
#include "support/RawPeer.h"
#include "system/Messages.h"

namespace {

constexpr int kBurst = 1000;

const RawPeer& Connection() {
  static const RawPeer peer = RawPeer::To(kProcess, "Hostile");
  return peer;
}

// Waits up to 10 ms for room, without reading.
void SendPatiently(const RawPeer& peer, const std::string& packet) {
  constexpr int kPatienceMs = 10;
  if (peer.Send(packet) != EAGAIN) return;
  pollfd room{peer.fd(), POLLOUT, 0};
  (void)poll(&room, 1, kPatienceMs);
  (void)peer.Send(packet);
}

void Burst(const std::string& packet) {
  for (int i = 0; i < kBurst; ++i) SendPatiently(Connection(), packet);
}

void Nothing() {
  (void)poll(nullptr, 0, 10);
}

void AskAndNeverRead() {
  constexpr unsigned int kQuestions[] = {MetadataMgrMsg_GetLastSystemTick, MetadataMgrMsg_Ping,
                                         LogLevelMsg_Get};
  for (const unsigned int type : kQuestions) Burst(Packet(type, U32(0)));
}

void FollowAndNeverRead() {
  constexpr unsigned int kIds = 100;
  for (unsigned int id = 1; id <= kIds; ++id)
    SendPatiently(Connection(), Packet(SubscribeMsg_Subscribe, U32(0) + U32(id)));
  Burst(Packet(MetadataMgrMsg_Bookmark, U32(1)));
}

void AskForCopies() {
  static int number = 0;
  const char* root = getenv("METADATA_ROOT");
  if (root == nullptr) abort();
  std::string path = root + std::string("/copy-") + std::to_string(++number);
  path.resize(1024);
  SendPatiently(Connection(), Packet(MetadataMgrMsg_MetadataToFile, path + U32(0) + U32(0xFFFFFFFF)));
  while (!Connection().Receive(0).value_or("").empty()) {
  }
}

void ConnectSilently() {
  std::vector<RawPeer> peers(kBurst);
  for (RawPeer& peer : peers) peer = RawPeer::To(kProcess);
}

void ConnectUnderManyNames() {
  std::vector<RawPeer> peers;
  for (int i = 0; i < kBurst; ++i) {
    peers.push_back(RawPeer::To(kProcess, "Hostile" + std::to_string(i)));
    SendPatiently(peers.back(), Packet(MetadataMgrMsg_Ping));
  }
}

// Is killed while its socket is full of requests and unread answers.
void Die() {
  const pid_t child = fork();
  if (child == 0) {
    const RawPeer peer = RawPeer::To(kProcess, "Dying");
    (void)peer.Send(Packet(SubscribeMsg_Subscribe, U32(0) + U32(1)));
    for (int i = 0; i < kBurst; ++i) (void)peer.Send(Packet(MetadataMgrMsg_GetLastSystemTick));
    (void)raise(SIGKILL);
  }
  (void)waitpid(child, nullptr, 0);
}

void SubscribeTenThousandTimes() {
  constexpr unsigned int kTimes = 10000;
  for (unsigned int id = 1; id <= kTimes; ++id) {
    SendPatiently(Connection(), Packet(SubscribeMsg_Subscribe, U32(0) + U32(id)));
    while (!Connection().Receive(0).value_or("").empty()) {
    }
  }
}

void SendEvents() {
  Burst(Packet(MetadataMgrMsg_VideoStreamState, U32(1) + U32(2) + U32(3)));
}

void SendDurableEvents() {
  Burst(Packet(MetadataMgrMsg_RecordStartStop, U32(1) + std::string(1, '\1')));
}

void SendGarbage() {
  for (const std::string& packet :
       {std::string("x"), std::string(100000, 'x'), Packet(4711), Packet(MetadataMgrMsg_Bookmark),
        Packet(SubscribeMsg_Subscribe, U32(7) + U32(1))}) {
    Burst(packet);
  }
}

void SayAnothersName() {
  for (const char* name : {"Good0", "Good1", "StateMgr", "MetadataMgr"}) {
    const RawPeer peer = RawPeer::To(kProcess, name);
    (void)peer.Send(Packet(MetadataMgrMsg_Ping));
    (void)peer.Closed(1000);
  }
}

constexpr Hostile kHostiles[] = {
    {"nobody", Nothing},
    {"asks and never reads", AskAndNeverRead},
    {"follows bookmarks, sends them, never reads", FollowAndNeverRead},
    {"asks for copies", AskForCopies},
    {"connects 1,000 times, says nothing", ConnectSilently},
    {"connects 1,000 times, as many names", ConnectUnderManyNames},
    {"dies in the middle, again and again", Die},
    {"subscribes 10,000 times", SubscribeTenThousandTimes},
    {"sends events as fast as it can", SendEvents},
    {"sends durable events so", SendDurableEvents},
    {"sends garbage so", SendGarbage},
    {"says another's name", SayAnothersName},
};

}  // namespace

std::span<const Hostile> Hostiles() {
  return kHostiles;
}
