#pragma once

#include <cstddef>
#include <string>

#include "ipc/LinxIpc.h"

// Queued sending, for the platform's own libraries.

// Bytes that may wait for one peer, message headers and bookkeeping included.
constexpr std::size_t kMaxPostedBytes = 256 * 1024;

// Sends a message to a peer that is connected, behind what is queued for it; what the peer cannot
// take now is queued and sent from within Receive. Never waits, never connects. 0; ENOTCONN: no
// such peer is connected; EAGAIN: the queue is full, the message was dropped.
int PostToPeer(LinxIpc& ipc, const std::string& peer, unsigned int type, const unsigned char* payload,
               std::size_t size);

// True as long as a connection with that peer stands.
bool PeerConnected(LinxIpc& ipc, const std::string& peer);

// Names the one function that is told, from within Receive, of each peer whose last connection
// closed.
using PeerGoneFunction = void (*)(void* context, const std::string& peer);
void OnPeerGone(LinxIpc& ipc, PeerGoneFunction function, void* context);
