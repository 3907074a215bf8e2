#pragma once

#include <span>

#include "MetadataMgr.h"
#include "system/Servers.h"

// An item of a server: the handler of its notices, and the mask-1 line for a failed subscription.
struct FollowedItem {
  unsigned int notificationId;
  LinxIpc::Handler handler;
  const char* failure;
};

// The row of the item with this notification id; a server must have such an item.
const FollowedItem& FollowedItemOf(unsigned int notificationId);

// How the manager uses a server; system/Servers.h has the part that other code needs.
struct MetadataMgr::FollowedServer {
  e_Process process;
  bool (MetadataMgr::*subscribe)(LinxIpc& ipc);
  const char* stepFailure;  // logged with mask 1 when `subscribe` fails
  const char* renewalName;  // its name in the log line of a renewal
  // Returns null before the first subscription.
  SubscribeClient* (*client)(const MetadataMgr& manager);
  unsigned int cleanUpPlace;  // position in the clean-up, from 1
};
