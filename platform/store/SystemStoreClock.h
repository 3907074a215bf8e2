#pragma once

#include "store/StoreOptions.h"

namespace store {

// The clocks of the machine.
const StoreClock& SystemClock();

}  // namespace store
