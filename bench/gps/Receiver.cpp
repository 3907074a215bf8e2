#include "Receiver.h"

#include "GpsdReceiver.h"
#include "NmeaReceiver.h"
#include "system/KvGetenv.h"

std::unique_ptr<Receiver> MakeReceiver() {
  if (const char* path = KvGetenv(kNmeaVariable)) return std::make_unique<NmeaReceiver>(path);
  if (const char* peer = KvGetenv(kGpsdVariable)) return std::make_unique<GpsdReceiver>(peer);
  return nullptr;
}
