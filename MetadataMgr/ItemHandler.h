#pragma once

#include <functional>

#include "EventHandler.h"
#include "MetadataMgr.h"

// Handlers whose payload is an item decode it and report it as a change.

// For items that are decoded from the whole message. An item that does not fit is reported as
// constructed; the decoder has logged it.
template <typename ItemType, typename Report>
void HandleMessageItem(LinxIpc* ipc, void* context, const HandlerShape& shape, Report report) {
  if (EnterHandler(*ipc, shape) == nullptr) return;
  ItemType item;
  (void)item.DecodeMsg(ipc->CurrentMessage());
  report(ManagerOf(context), item);
}

// For items that are decoded from the payload's first byte on. Missing bytes read as zero.
template <typename ItemType, typename Report>
void HandlePayloadItem(LinxIpc* ipc, void* context, const HandlerShape& shape, Report report) {
  unsigned char* payload = EnterHandler(*ipc, shape);
  if (payload == nullptr) return;
  ItemType item;
  (void)item.Decode(payload);
  report(ManagerOf(context), item);
}
