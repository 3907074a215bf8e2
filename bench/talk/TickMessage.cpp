#include "TickMessage.h"

#include "system/BigEndian.h"
#include "system/Systick.h"

namespace bench {

std::uint32_t AllocateTick(IpcMessage& message, unsigned int type, int flag,
                           std::optional<std::uint32_t> given) {
  constexpr unsigned int kTickSize = 4;
  const std::uint32_t tick = given ? *given : Systick().SystemTick();
  (void)message.Allocate(type, kTickSize + (flag < 0 ? 0 : 1), nullptr);
  PutU32(message.DataPtr(), tick);
  if (flag >= 0) message.DataPtr()[kTickSize] = static_cast<unsigned char>(flag);
  return tick;
}

}  // namespace bench
