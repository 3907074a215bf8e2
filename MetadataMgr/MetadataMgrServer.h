#pragma once

#include "clients/SubscribeServer.h"

// This process publishes item 0, a BoolItem that is pushed as true at each bookmark and
// always reads false.
class MetadataMgrServer : public SubscribeServer {
 public:
  explicit MetadataMgrServer(LinxIpc& ipc) : SubscribeServer(ipc) {}

  void GetItem(unsigned int itemId, IpcMessage& reply, unsigned int messageType) override;

  // Tells every subscriber of item 0 that a bookmark was taken.
  void Bookmark();
};
