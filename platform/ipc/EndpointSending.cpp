#include <utility>

#include "Endpoint.h"
#include "Wire.h"

// Connecting and sending.

namespace ipc {

// Only the directory's owner and root can create an endpoint, but they could pass the listening socket to
// another user. Refuses such a server.
Connection* Endpoint::AddServer(os::Descriptor fd, const std::string& name, os::Errno& error) {
  const Connection::Peer peer = PeerOf(fd);
  if (!peer.isSystem) {
    refused_("Did not connect to ", name, ": user ", peer.process.user, " listens there");
    error = EACCES;
    return nullptr;
  }
  if (!MakeRoom(true)) {
    error = EMFILE;
    return nullptr;
  }
  Connection* connection = connections_.Add(std::move(fd), Connection::Origin::kConnected, peer, name);
  std::string hello(1, static_cast<char>(wire::kVersion));
  hello += name_;
  error =
      connection->Send(wire::kHelloType, reinterpret_cast<const unsigned char*>(hello.data()), hello.size());
  if (!error.Failed()) return connection;
  Close(*connection);
  return nullptr;
}

Connection* Endpoint::ConnectTo(const std::string& name, os::Errno& error) {
  os::Descriptor fd;
  error = EndpointSocket::Connect(directory_, name, fd);
  return error.Failed() ? nullptr : AddServer(std::move(fd), name, error);
}

Connection* Endpoint::FindServer(const std::string& name) const {
  for (Connection* connection : connections_.Named(name)) {
    if (connection->Usable() && connection->ToServer()) return connection;
  }
  return nullptr;
}

// Also uses a connection that the server made, if its process is the one that listens.
Connection* Endpoint::ConnectToServer(const std::string& name, os::Errno& error) {
  os::Descriptor fd;
  error = EndpointSocket::Connect(directory_, name, fd);
  if (error.Failed()) return nullptr;
  const Connection::Peer server = PeerOf(fd);
  Connection* made = nullptr;
  for (Connection* connection : connections_.Named(name)) {
    const bool same = server.process.id != 0 && connection->peer().process.id == server.process.id;
    if (same && connection->Usable()) {
      made = connection;
    } else if (!same && server.isSystem && !connection->HungUp()) {
      Refuse(*connection, "another process listens under its name");
    }
  }
  if (made == nullptr) return AddServer(std::move(fd), name, error);
  made->SetToServer();
  return made;
}

bool Endpoint::CanSendTo(const std::string& destination) const {
  return connections_.IsOpen() && wire::ValidName(destination) && destination != name_;
}

os::Errno Endpoint::SendOver(Connection& connection, const IpcMessage& message, bool wait) {
  const os::Errno error = wait
                              ? connection.SendPatiently(message.MsgType(), message.DataPtr(), message.Size())
                              : connection.Send(message.MsgType(), message.DataPtr(), message.Size());
  connections_.UpdateInterest(connection);
  return error;
}

// A peer that closed its connection may have restarted, so a failed send is retried over a new connection.
os::Errno Endpoint::Notify(const std::string& destination, const IpcMessage& message, bool wait) {
  if (!CanSendTo(destination)) return EINVAL;
  for (;;) {
    os::Errno error;
    Connection* connection = connections_.Find(destination);
    const bool isNew = connection == nullptr;
    if (isNew) connection = ConnectTo(destination, error);
    if (connection == nullptr) return error;
    error = SendOver(*connection, message, wait);
    if (isNew || !error.Failed() || error == EAGAIN) return error;
  }
}

os::Errno Endpoint::NotifyServer(const std::string& server, const IpcMessage& message, bool wait) {
  if (!CanSendTo(server)) return EINVAL;
  for (;;) {
    os::Errno error;
    Connection* connection = FindServer(server);
    const bool isNew = connection == nullptr;
    if (isNew) connection = ConnectToServer(server, error);
    if (connection == nullptr) return error;
    error = SendOver(*connection, message, wait);
    if (isNew || !error.Failed() || error == EAGAIN) return error;
  }
}

// After a failure tries the peer's other connections.
os::Errno Endpoint::Post(const std::string& peer, unsigned int type, const unsigned char* payload,
                         std::size_t size, std::size_t maxQueuedBytes) {
  while (Connection* connection = connections_.Find(peer)) {
    const std::size_t most = connection->peer().isSystem ? maxQueuedBytes : kMaxPostedToObserverBytes;
    const os::Errno error = connection->Post(type, payload, size, most);
    connections_.UpdateInterest(*connection);
    if (!error.Failed() || error == EAGAIN) return error;
  }
  return ENOTCONN;
}

std::size_t Endpoint::PostedTo(const std::string& peer) const {
  const Connection* connection = connections_.Find(peer);
  return connection != nullptr ? connection->QueuedBytes() : 0;
}

std::uint64_t Endpoint::ConnectionToServer(const std::string& server) const {
  const Connection* connection = FindServer(server);
  return connection != nullptr ? connection->number() : 0;
}

}  // namespace ipc
