#include "Misc/StateMgrNotices.h"

#include "system/BigEndian.h"
#include "system/KvGetenv.h"

bool RunsWithoutStateMgr() {
  return KvGetenv("RUN_WITHOUT_STATEMGR") != nullptr;
}

ProcessPayload::ProcessPayload(e_Process process) {
  PutU32(reinterpret_cast<unsigned char*>(bytes_), process);
}

e_Process ProcessPayload::Read(const unsigned char* payload) {
  return static_cast<e_Process>(GetU32(payload));
}
