#include "Receiver.h"

#include <utility>

#include "GpsdReceiver.h"
#include "NmeaReceiver.h"
#include "system/KvGetenv.h"

namespace bench {

std::unique_ptr<Receiver> MakeReceiver(std::function<void(const std::string& text)> say) {
  if (const char* path = KvGetenv(kNmeaVariable)) return std::make_unique<NmeaReceiver>(path);
  if (const char* peer = KvGetenv(kGpsdVariable)) return std::make_unique<GpsdReceiver>(peer, std::move(say));
  return nullptr;
}

}  // namespace bench
