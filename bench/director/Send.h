#pragma once

#include "Words.h"

namespace bench {

// Sends a command to the bench whose endpoints are in LINX_IPC_DIR, and prints the answer. Returns true when
// the command succeeded.
bool SendToBench(const Words& words);

}  // namespace bench
