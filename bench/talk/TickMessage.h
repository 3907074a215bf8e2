#pragma once

#include <cstdint>

#include "ipc/IpcMessage.h"

namespace bench {

// Allocates a message with the current system tick and, unless `flag` is negative, one byte. Returns the
// tick.
std::uint32_t AllocateTick(IpcMessage& message, unsigned int type, int flag = -1);

}  // namespace bench
