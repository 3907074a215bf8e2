#pragma once

#include <span>

#include "MetadataMgr.h"
#include "system/Servers.h"

// What the manager does with each item of the servers: the handler of its notices, and the line that is
// logged with mask 1 when the server refuses the subscription.
struct FollowedItem {
  unsigned int notificationId;
  LinxIpc::Handler handler;
  const char* failure;
};

// The row of the item with this notification id, which one of the servers has.
const FollowedItem& FollowedItemOf(unsigned int notificationId);

// What the manager does with each server; system/Servers.h has what others know of it.
struct MetadataMgr::FollowedServer {
  e_Process process;
  bool (MetadataMgr::*subscribe)(LinxIpc& ipc);
  const char* stepFailure;  // logged with mask 1 when `subscribe` fails
  const char* renewalName;  // what the line of a renewal calls it
  // Null as long as the server has not been subscribed to.
  SubscribeClient* (*client)(const MetadataMgr& manager);
  unsigned int cleanUpPlace;  // from 1 on: when its subscriptions are ended
};
