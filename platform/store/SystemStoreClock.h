#pragma once

#include "store/StoreOptions.h"

namespace store {

// The machine's system tick and wall clock.
const StoreClock& SystemClock();

}  // namespace store
