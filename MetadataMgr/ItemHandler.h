#pragma once

#include <functional>

#include "EventHandler.h"
#include "MetadataMgr.h"

// Handlers of messages with an item: decode the item and report it as a change.

// Decodes the item with DecodeMsg. When the payload is too short, DecodeMsg logs it and the item is reported
// as constructed.
template <typename ItemType, typename Report>
void HandleMessageItem(LinxIpc* ipc, void* context, const HandlerShape& shape, Report report) {
  if (EnterHandler(*ipc, shape) == nullptr) return;
  ItemType item;
  (void)item.DecodeMsg(ipc->CurrentMessage());
  report(ManagerOf(context), item);
}

// Decodes the item from the start of the payload. Missing bytes read as zero.
template <typename ItemType, typename Report>
void HandlePayloadItem(LinxIpc* ipc, void* context, const HandlerShape& shape, Report report) {
  unsigned char* payload = EnterHandler(*ipc, shape);
  if (payload == nullptr) return;
  ItemType item;
  (void)item.Decode(payload);
  report(ManagerOf(context), item);
}
