#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "ipc/LinxIpc.h"
#include "os/Errno.h"

// The subscribe protocol on the wire. All fields are 32-bit big-endian.
//
//   SubscribeMsg_Subscribe    item id, notification id    a notification id of 0 asks for the value only
//   SubscribeMsg_Answer       item id, notification id, result (0, or an errno value of Linux), then,
//                             with result 0, the item
//   SubscribeMsg_Unsubscribe  item id, notification id    not answered
//   notices                   the message type is the notification id; the payload is the item
namespace ipc::subscribe {

constexpr std::size_t kRequestSize = 8;
constexpr std::size_t kAnswerHeaderSize = 12;

constexpr unsigned int kAccepted = 0;
constexpr unsigned int kNoSuchItem = 2;  // ENOENT
constexpr unsigned int kNoRoom = 28;     // ENOSPC

// A server, and the number of the connection that carried the request.
struct Asked {
  const std::string& server;
  std::uint64_t connection;
};

// Waits for a message of `type` from a server after a request. ETIMEDOUT: no answer; ENOTCONN: the connection
// closed without an answer (detected within 100 ms); ESHUTDOWN: a shutdown notice arrived first.
os::Errno AwaitAnswer(LinxIpc& ipc, int timeoutMs, unsigned int type, const Asked& asked, IpcMessage& answer);

}  // namespace ipc::subscribe
