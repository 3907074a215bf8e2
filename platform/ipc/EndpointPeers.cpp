#include <utility>
#include <vector>

#include "Endpoint.h"
#include "Wire.h"
#include "ipc/LinxServerNameList.h"

// Accepting, naming and closing connections.

namespace ipc {

Connection::Peer Endpoint::PeerOf(const os::Descriptor& fd) const {
  const PeerProcess process = PeerProcess::Behind(fd.Get());
  return {process, directory_.IsSystem(process)};
}

void Endpoint::Accept() {
  constexpr int kPerWakeUp = 8;
  for (int i = 0; i < kPerWakeUp; ++i) {
    os::Descriptor fd = socket_.Accept();
    if (!fd.IsOpen()) return;
    const Connection::Peer peer = PeerOf(fd);
    if (MakeRoom(peer.isSystem))
      (void)connections_.Add(std::move(fd), Connection::Origin::kAccepted, peer, "");
  }
}

// Makes room for one more connection.
bool Endpoint::MakeRoom(bool forSystem) {
  if (!connections_.Full()) return true;
  Connection* first = connections_.FirstToGo(forSystem);
  if (first == nullptr) return false;
  if (!first->name().empty()) {
    refused_(
        "Closed a connection of ", first->name(), ", process ", first->peer().process.id,
        first->HungUp() ? ", which is gone: no room for what it had sent" : ": another one needs its place");
  }
  Close(*first);
  return true;
}

void Endpoint::TakeHello(Connection& connection, const IpcMessage& hello) {
  const unsigned char* payload = hello.DataPtr();
  if (payload == nullptr || payload[0] != wire::kVersion) {
    Refuse(connection, "another version of the protocol");
    return;
  }
  const std::string name(payload + 1, payload + hello.Size());
  if (!wire::ValidName(name) || name == name_) {
    Refuse(connection, "invalid name");
  } else if (!connection.peer().isSystem && LinxServerNameList::Instance().Has(name)) {
    Refuse(connection, "its name belongs to the system");
  } else if (!TakeName(connection, name)) {
    Refuse(connection, "its name is in use");
  } else {
    connection.SetName(name);
  }
}

// A connected process owns its name. Both sides may connect at the same time, so a connection from this side
// to the same process is allowed. If all other connections of the name are dead, the peer was restarted;
// reads what the old process sent.
bool Endpoint::TakeName(const Connection& newcomer, const std::string& name) {
  const std::vector<Connection*> holders = connections_.Named(name);
  bool inUse = false;
  for (Connection* holder : holders) {
    const bool ours = holder->origin() == Connection::Origin::kConnected;
    if (holder->HungUp()) {
      holder->StopSending();
    } else if (!ours || holder->peer().process.id != newcomer.peer().process.id) {
      inUse = true;
    }
  }
  if (!inUse && !holders.empty() && !IsConnected(name)) PeerGone(name);
  return !inUse;
}

void Endpoint::Refuse(Connection& connection, const char* why) {
  refused_("Refused a connection of process ", connection.peer().process.id, ", user ",
           connection.peer().process.user, ": ", why);
  Close(connection);
}

void Endpoint::Close(Connection& connection) {
  const std::string name = connection.name();
  connections_.Remove(&connection);
  if (!name.empty() && !IsConnected(name)) PeerGone(name);
}

void Endpoint::PeerGone(const std::string& peer) {
  if (peerGone_ != nullptr) peerGone_(peerGoneContext_, peer);
}

void Endpoint::OnPeerGone(PeerGoneFunction function, void* context) {
  peerGone_ = function;
  peerGoneContext_ = context;
}

}  // namespace ipc
