#pragma once

#include <span>

#include "MetadataMgr.h"
#include "system/Servers.h"

// An item of a server: the handler of its notices, and the line with mask 1 for a refused subscription.
struct FollowedItem {
  unsigned int notificationId;
  LinxIpc::Handler handler;
  const char* failure;
};

// The row of the item with this notification id, which one of the servers has.
const FollowedItem& FollowedItemOf(unsigned int notificationId);

// A server, as the manager uses it; system/Servers.h has the part that others need.
struct MetadataMgr::FollowedServer {
  e_Process process;
  bool (MetadataMgr::*subscribe)(LinxIpc& ipc);
  const char* stepFailure;  // logged with mask 1 when `subscribe` fails
  const char* renewalName;  // its name in the line of a renewal
  // Null as long as the server has not been subscribed to.
  SubscribeClient* (*client)(const MetadataMgr& manager);
  unsigned int cleanUpPlace;  // from 1 on: when its subscriptions are ended
};
