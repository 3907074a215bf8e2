#pragma once

#include "ipc/LinxIpc.h"
#include "log/LogLine.h"

class MetadataMgr;

// The common steps of all handlers: trace the entry, check the payload, report.

inline MetadataMgr& ManagerOf(void* context) {
  return *static_cast<MetadataMgr*>(context);
}

// A handler's name for its log lines, and the payload that it needs.
struct HandlerShape {
  // Implicit, so that a table or a call may give only the name.
  HandlerShape(const char* handlerName, unsigned int bytes = 0)  // NOLINT(google-explicit-constructor)
      : name(handlerName), payloadBytes(bytes) {}

  const char* name;
  unsigned int payloadBytes;              // drops shorter payloads; 0 for items
  e_LogMask traceMask = kLogTrace;        // mask of the entry trace
  const char* nullPayloadName = nullptr;  // name in the log line for a missing payload; null: `name`
};

// Traces the entry and returns the payload. Logs with mask 2 and returns null when the payload is missing or
// too short.
unsigned char* EnterHandler(LinxIpc& ipc, const HandlerShape& shape);
