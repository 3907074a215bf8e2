#include "SubscribeProtocol.h"

#include <algorithm>
#include <cerrno>

#include "ipc/PeerQueue.h"

// A closing connection does not end a selective wait: it is looked for between short ones. It is
// looked for before the wait, so that an answer which came just before the end is still taken.
int subscribe::AwaitAnswer(LinxIpc& ipc, int timeoutMs, unsigned int type, const Asked& asked,
                           IpcMessage& answer) {
  constexpr int kLookMs = 100;
  for (int leftMs = timeoutMs;; leftMs -= kLookMs) {
    const bool connected = PeerConnection(ipc, asked.peer) == asked.connection;
    const int result = ipc.Receive(connected ? std::clamp(leftMs, 0, kLookMs) : 0, type, asked.peer, &answer);
    if (result != ETIMEDOUT) return result;
    if (!connected) return ENOTCONN;
    if (leftMs <= kLookMs) return ETIMEDOUT;
  }
}
