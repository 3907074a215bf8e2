#pragma once

#include "log/LogLine.h"

// The log name of what writes recordings.
constexpr LogSource kStoreLog{"DataStore"};
