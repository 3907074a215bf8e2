#pragma once

#include "Words.h"

namespace bench {

// Has the bench that runs at the endpoints in force (LINX_IPC_DIR) do one command, and prints its
// answer. True when it was done.
bool SendToBench(const Words& words);

}  // namespace bench
