#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "ipc/LinxIpc.h"

// What an endpoint offers to the platform's own libraries beyond LinxIpc.
namespace ipc {

// Bytes that may wait for one peer, message headers and bookkeeping included: about 5,500 small notices,
// which a server of 300 a second makes in 18 seconds. An answer still finds room where notices have filled
// theirs.
constexpr std::size_t kMaxPostedNoticeBytes = 1024UL * 1024;
constexpr std::size_t kMaxPostedAnswerBytes = kMaxPostedNoticeBytes + 64UL * 1024;

// Sends a message to a peer that is connected, behind what is queued for it. What the peer cannot
// take now is queued and sent from within Receive. Never waits, never connects. 0; ENOTCONN: no
// such peer is connected; EAGAIN: more than `maxQueuedBytes` would wait, the message was dropped.
[[nodiscard]] int PostToPeer(LinxIpc& ipc, const std::string& peer, unsigned int type,
                             const unsigned char* payload, std::size_t size, std::size_t maxQueuedBytes);

// Bytes that wait for the peer now.
std::size_t PostedBytes(LinxIpc& ipc, const std::string& peer);

// LinxIpc::Notify, but only to the process that listens under the name: over a connection that was made to
// its socket, or one that the same process made.
[[nodiscard]] int NotifyServer(LinxIpc& ipc, const std::string& server, IpcMessage& message, bool wait);

// The number of the connection that NotifyServer uses, 0 when there is none. Numbers are never reused: a
// different number means that the server, or its connection, is another one.
std::uint64_t ServerConnection(LinxIpc& ipc, const std::string& server);

// LinxIpc::RegisterHandler, but messages that `admits` refuses are dropped before the handler.
void RegisterHandler(LinxIpc& ipc, unsigned int type, LinxIpc::Handler handler, void* context,
                     std::function<bool(IpcMessage& message)> admits);

// Sets the one function that is told, from within Receive, of each peer whose last connection
// closed.
using PeerGoneFunction = void (*)(void* context, const std::string& peer);
void OnPeerGone(LinxIpc& ipc, PeerGoneFunction function, void* context);

}  // namespace ipc
