#pragma once

#include "log/LogLine.h"

// The start-up sequence and its handlers log under one name.
constexpr LogSource kInitializerLog{"Common/Misc/ProcessInitializer"};
