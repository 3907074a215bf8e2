#pragma once

#include <string>

#include "system/KvGetenv.h"

// The name of the shared record's segment.
inline std::string SharedRecordName() {
  const char* name = KvGetenvText("METADATA_SHM");
  if (!name) return "/metadata";
  return name[0] == '/' ? name : std::string("/") + name;
}
