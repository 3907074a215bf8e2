#include "clients/ExternalMgrApi.h"

#include "system/KvGetenv.h"

bool ExternalMgrApi::InLvsForceHqStreaming() {
  static const bool forced = KvGetenv("LVS_FORCE_HQ") != nullptr;
  return forced;
}
