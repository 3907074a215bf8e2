#include "MetadataMgrServer.h"

#include "items/BoolItem.h"
#include "log/LogLine.h"

namespace {

constexpr LogSource log{"MetadataMgrServer"};
constexpr unsigned int kBookmarkItem = 0;

}  // namespace

void MetadataMgrServer::GetItem(unsigned int itemId, IpcMessage& reply, unsigned int messageType) {
  log(kLogInfo, "GetItem");
  if (itemId != kBookmarkItem) {
    log(kLogMalformed, "GetItem", " Unknown item passed in ", itemId);
    return;
  }
  const BoolItem item(false);
  if (reply.Allocate(messageType, item.Size(), nullptr) != 0) {
    log(kLogMalformed, "GetItem", ": Failed to allocate message");
    return;
  }
  (void)item.EncodeMsg(reply);
}

void MetadataMgrServer::Bookmark() {
  log(kLogInfo, "Bookmark");
  BoolItem item(true);
  NotifySubscribers(kBookmarkItem, item);
}
