#pragma once

#include <string>

// State of the whole process. Misc/StateMgrNotices.h declares one more variable, gStateMgrName, because every
// process has it.

extern bool gShutdownRequested;    // quit requested; the main loop ends after the current pass
extern bool gSimulatorMode;        // reports simulated events on every pass
extern bool gRadarOnlyMode;        // simulates only the radar
extern bool gStoreInitialized;     // the first records were written
extern std::string gMetadataDir;   // directory of the recordings
extern std::string gMetadataPath;  // base path of the recordings
