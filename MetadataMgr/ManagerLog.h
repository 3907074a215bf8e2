#pragma once

#include "log/LogLine.h"

// The entry point, the manager and its handlers log under one name.
constexpr LogSource kManagerLog{"MetadataMgr"};
