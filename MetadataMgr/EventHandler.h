#pragma once

#include "ipc/LinxIpc.h"
#include "log/LogLine.h"

class MetadataMgr;

// The shape that all handlers share: trace the entry, test the payload, work.

inline MetadataMgr& ManagerOf(void* context) {
  return *static_cast<MetadataMgr*>(context);
}

// The name of a handler, for its log lines, and the payload that it needs.
struct HandlerShape {
  // Implicit, so that a table or a call may say just the name.
  HandlerShape(const char* handlerName, unsigned int bytes = 0)  // NOLINT(google-explicit-constructor)
      : name(handlerName), payloadBytes(bytes) {}

  const char* name;
  unsigned int payloadBytes;              // a shorter payload is dropped; 0 for items
  e_LogMask traceMask = kLogTrace;        // of the entry trace, which is the name
  const char* nullPayloadName = nullptr;  // in the line of a missing payload; null: the name
};

// Traces the entry; returns the payload, or null after a mask-2 line when there is none or it is
// shorter than the handler needs.
unsigned char* EnterHandler(LinxIpc& ipc, const HandlerShape& shape);
