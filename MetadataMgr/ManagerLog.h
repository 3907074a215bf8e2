#pragma once

#include "log/LogLine.h"

// The log name of the entry point, the manager and its handlers.
constexpr LogSource kManagerLog{"MetadataMgr"};
