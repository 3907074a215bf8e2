#pragma once

#include "log/LogLine.h"

// The log name of endpoints and their directory.
constexpr LogSource kIpcLog{"LinxIpc"};
