#pragma once

#include "clients/SubscribeServer.h"

// The server of this process. Publishes item 0, a BoolItem: sends true at each bookmark; its value on request
// is always false.
class MetadataMgrServer : public SubscribeServer {
 public:
  explicit MetadataMgrServer(LinxIpc& ipc) : SubscribeServer(ipc) {}

  void GetItem(unsigned int itemId, IpcMessage& reply, unsigned int messageType) override;

  // Notifies every subscriber of item 0 of a bookmark.
  void Bookmark();
};
