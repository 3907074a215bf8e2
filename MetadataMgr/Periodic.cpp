#include <array>
#include <cstdio>

#include "MetadataMgr.h"
#include "ProcessState.h"

void MetadataMgr::PeriodicProcessing() {
  if (gShutdownRequested) return;
  dataStore.TimerTick(systick.SystemTick());
  if (forceMetadata) {
    std::array<char, 256> text;
    (void)std::snprintf(text.data(), text.size(), "Test string for filler %u", systick.SystemTick());
    dataStore.ReportStringData(e_Tag_Filler, text.data());
  }
  if (gSimulatorMode) SimulateData();
}
