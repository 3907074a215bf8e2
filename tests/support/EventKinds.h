#pragma once

#include <string>
#include <vector>

#include "ipc/LinxIpc.h"

// A kind of message that brings an event to the process, with a typical payload.
struct EventKind {
  const char* name;
  unsigned int type;
  LinxIpc::Handler handler;
  std::string payload;

  std::string Packet() const;  // on the wire: the type, then the payload
};

const std::vector<EventKind>& EventKinds();

// Registers the handlers that the process registers when it subscribes. `context` is its manager.
void RegisterEventHandlers(LinxIpc& ipc, void* context);
