#pragma once

#include <string>

// State of the whole process. The state manager's name (gStateMgrName) belongs to it too; it is
// declared in Misc/StateMgrNotices.h, since every process has it.

extern bool gShutdownRequested;    // a quit was handled; the loop ends after the current pass
extern bool gSimulatorMode;        // simulated metadata is generated on every pass
extern bool gRadarOnlyMode;        // the simulation is limited to radar
extern bool gStoreInitialized;     // the first output to the metadata files was made
extern std::string gMetadataDir;   // directory of the metadata files
extern std::string gMetadataPath;  // their base path
