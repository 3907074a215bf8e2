#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "ipc/LinxIpc.h"

// Operations of an endpoint for the platform's own libraries, in addition to LinxIpc.
namespace ipc {

// Limits of the bytes queued for one peer, including message headers and bookkeeping. Notices: about 22,000
// small ones, or 73 seconds of a server that sends 300 a second. The higher limit leaves room for an answer
// when notices have reached theirs. An observer gets far less, because it may have many connections and read
// none of them.
constexpr std::size_t kMaxPostedNoticeBytes = 4096UL * 1024;
constexpr std::size_t kMaxPostedAnswerBytes = kMaxPostedNoticeBytes + 64UL * 1024;
constexpr std::size_t kMaxPostedToObserverBytes = 64UL * 1024;

// Sends a message to a connected peer, after the messages queued for it. Queues it when the peer is full;
// Receive sends it later. Never waits, never connects. Returns 0; ENOTCONN: the peer is not connected;
// EAGAIN: the queue would exceed `maxQueuedBytes`, or an observer's limit; the message was dropped.
[[nodiscard]] int PostToPeer(LinxIpc& ipc, const std::string& peer, unsigned int type,
                             const unsigned char* payload, std::size_t size, std::size_t maxQueuedBytes);

// Bytes queued for the peer.
std::size_t PostedBytes(LinxIpc& ipc, const std::string& peer);

// Like LinxIpc::Notify, but sends only to the process that listens under the name: over a connection to its
// socket, or one that the same process made.
[[nodiscard]] int NotifyServer(LinxIpc& ipc, const std::string& server, IpcMessage& message, bool wait);

// The number of the connection that NotifyServer uses, or 0. Numbers are never reused: a different number
// means a new connection, perhaps to a restarted server.
std::uint64_t ServerConnection(LinxIpc& ipc, const std::string& server);

// Like LinxIpc::RegisterHandler, but drops messages that `admits` rejects.
void RegisterHandler(LinxIpc& ipc, unsigned int type, LinxIpc::Handler handler, void* context,
                     std::function<bool(IpcMessage& message)> admits);

// Sets the one function that Receive calls for each peer whose last connection closed.
using PeerGoneFunction = void (*)(void* context, const std::string& peer);
void OnPeerGone(LinxIpc& ipc, PeerGoneFunction function, void* context);

}  // namespace ipc
