#pragma once

#include <cstdint>

#include "ipc/IpcMessage.h"

namespace bench {

// Makes a message that carries the current system tick and, where `flag` is not negative, a byte. Returns
// the tick.
std::uint32_t AllocateTick(IpcMessage& message, unsigned int type, int flag = -1);

}  // namespace bench
