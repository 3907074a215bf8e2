#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "ipc/LinxIpc.h"

// Queued sending, for the platform's own libraries.

// Bytes that may wait for one peer, message headers and bookkeeping included. An answer still
// finds room where notices have filled theirs.
constexpr std::size_t kMaxPostedNoticeBytes = 256UL * 1024;
constexpr std::size_t kMaxPostedAnswerBytes = 320UL * 1024;

// Sends a message to a peer that is connected, behind what is queued for it; what the peer cannot
// take now is queued and sent from within Receive. Never waits, never connects. 0; ENOTCONN: no
// such peer is connected; EAGAIN: more than `maxQueuedBytes` would wait, the message was dropped.
int PostToPeer(LinxIpc& ipc, const std::string& peer, unsigned int type, const unsigned char* payload,
               std::size_t size, std::size_t maxQueuedBytes);

// How many bytes wait for it now.
std::size_t PostedBytes(LinxIpc& ipc, const std::string& peer);

// The number of the connection over which that peer is sent to, 0 when there is none. A number is
// never used again: another one tells that the peer, or its connection, is another.
std::uint64_t PeerConnection(LinxIpc& ipc, const std::string& peer);

// Names the one function that is told, from within Receive, of each peer whose last connection
// closed.
using PeerGoneFunction = void (*)(void* context, const std::string& peer);
void OnPeerGone(LinxIpc& ipc, PeerGoneFunction function, void* context);
