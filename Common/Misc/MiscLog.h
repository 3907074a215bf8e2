#pragma once

#include "log/LogLine.h"

// The log name of the start-up sequence and its handlers.
constexpr LogSource kInitializerLog{"Common/Misc/ProcessInitializer"};
