#include "ProcessState.h"

#include "Misc/StateMgrNotices.h"

bool gShutdownRequested = false;
bool gSimulatorMode = false;
bool gRadarOnlyMode = false;
bool gStoreInitialized = false;
std::string gStateMgrName;
std::string gMetadataDir;
std::string gMetadataPath;
