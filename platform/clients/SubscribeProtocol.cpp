#include "SubscribeProtocol.h"

#include <algorithm>

#include "ipc/PeerQueue.h"

// A closing connection does not end a selective wait, so checks it between short waits. Checks before each
// wait, so that an answer sent just before the connection closed is still received.
os::Errno ipc::subscribe::AwaitAnswer(LinxIpc& ipc, int timeoutMs, unsigned int type, const Asked& asked,
                                      IpcMessage& answer) {
  constexpr int kCheckMs = 100;
  for (int leftMs = timeoutMs;; leftMs -= kCheckMs) {
    const bool connected = ServerConnection(ipc, asked.server) == asked.connection;
    const os::Errno result =
        ipc.Receive(connected ? std::clamp(leftMs, 0, kCheckMs) : 0, type, asked.server, &answer);
    if (!(result == ETIMEDOUT)) return result;
    if (!connected) return ENOTCONN;
    if (leftMs <= kCheckMs) return ETIMEDOUT;
  }
}
