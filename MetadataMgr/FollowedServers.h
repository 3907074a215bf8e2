#pragma once

#include <span>

#include "MetadataMgr.h"
#include "system/Servers.h"

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
