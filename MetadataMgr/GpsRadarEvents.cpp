#include "ItemHandler.h"
#include "ManagerLog.h"
#include "SharedRecord.h"
#include "SpeedSources.h"
#include "Subscribing.h"
#include "items/GpsStatusItem.h"
#include "items/RadarItem.h"

bool MetadataMgr::SubscribeToGpsHal(LinxIpc& ipc) {
  return subscribing::SubscribeAndReport<e_Process_GpsHal, GpsStatusItem>(
      gpsHalClient, ipc, this, [this](const GpsStatusItem& item) { ReportGpsStatus(item, false); });
}

bool MetadataMgr::SubscribeToRadarHal(LinxIpc& ipc) {
  return subscribing::SubscribeAndReport<e_Process_RadarHal, RadarItem>(
      radarHalClient, ipc, this, [this](const RadarItem& item) { ReportRadarEvent(item, false); });
}

void MetadataMgr::ReportGpsStatus(const GpsStatusItem& item, bool report) {
  kManagerLog(kLogInfo, "Add in SystemTick to GpsStatusItem - tick = ", item.tick);
  if (item.HasFix()) {
    const auto speedKmh = static_cast<unsigned short>(item.speedDeciKmh / 10);
    dataStore.ReportGpsState(true, report);
    dataStore.ReportGps(item, item.tick, report);
    dataStore.ReportSpeed(kSourceGps, speedKmh, report, item.tick, e_Tag_None);
  } else {
    dataStore.ReportGpsState(false, report);
    dataStore.ReportValidSpeed(kSourceGps, false);
  }
  sharedrecord::WriteGps(sharedMem.MetadataItems(true), item);
}

void MetadataMgr::ReportRadarEvent(const RadarItem& item, bool report) {
  kManagerLog(kLogInfo, "Add in SystemTick to RadarItem - tick = ", item.tick);
  if (item.Valid()) {
    dataStore.ReportRadarState(kRadarNumber, true, report);
    dataStore.ReportRadar(kRadarNumber, item.targetSpeedKmh, item.fastestSpeedKmh, item.lockedSpeedKmh,
                          e_RADAR_DIRECTION_Unknown, report, item.tick, e_Tag_None);
    dataStore.ReportSpeed(kSourceRadar, item.patrolSpeedKmh, report, item.tick, e_Tag_None);
  } else {
    dataStore.ReportRadarState(kRadarNumber, false, report);
    dataStore.ReportValidSpeed(kSourceRadar, false);
  }
  sharedrecord::WriteRadar(sharedMem.MetadataItems(true), item);
}

void MetadataMgr::GpsStatusEventHandler(LinxIpc* ipc, void* context) {
  HandleMessageItem<GpsStatusItem>(
      ipc, context, {"GpsStatusEventHandler"},
      [](MetadataMgr& manager, const GpsStatusItem& item) { manager.ReportGpsStatus(item, true); });
}

void MetadataMgr::RadarEventHandler(LinxIpc* ipc, void* context) {
  HandleMessageItem<RadarItem>(
      ipc, context, {"RadarEventHandler"},
      [](MetadataMgr& manager, const RadarItem& item) { manager.ReportRadarEvent(item, true); });
}
