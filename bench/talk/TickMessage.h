#pragma once

#include <cstdint>
#include <optional>

#include "ipc/IpcMessage.h"

namespace bench {

// Allocates a message with a tick, by default the current one, and, unless `flag` is negative, one byte.
// Returns the tick.
std::uint32_t AllocateTick(IpcMessage& message, unsigned int type, int flag = -1,
                           std::optional<std::uint32_t> given = {});

}  // namespace bench
