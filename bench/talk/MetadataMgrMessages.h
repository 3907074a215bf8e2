#pragma once

#include <cstdint>

#include "ipc/IpcMessage.h"
#include "system/Messages.h"

// The item that it publishes: true in a notice says that a bookmark was taken.
constexpr unsigned int kBookmarkItem = 0;

// Under which the bench gets the notices of that item.
constexpr unsigned int kBookmarkNotice = 30736;

// Makes a message that carries the current system tick, which is the result, and, where `flag` is
// not negative, a byte.
std::uint32_t AllocateTick(IpcMessage& message, unsigned int type, int flag = -1);
