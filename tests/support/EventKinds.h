#pragma once

#include <string>
#include <vector>

#include "ipc/LinxIpc.h"

// A message of each kind by which an event reaches the process, with a payload of usual content.
struct EventKind {
  const char* name;
  unsigned int type;
  LinxIpc::Handler handler;
  std::string payload;

  std::string Packet() const;  // as it travels: the type, then the payload
};

const std::vector<EventKind>& EventKinds();

// Registers the handlers that the process would register as it subscribes. `context` is its manager.
void RegisterEventHandlers(LinxIpc& ipc, void* context);
