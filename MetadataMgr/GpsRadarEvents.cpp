#include "ItemHandler.h"
#include "ManagerLog.h"
#include "SharedRecord.h"
#include "SpeedSources.h"
#include "Subscribing.h"
#include "items/GpsStatusItem.h"
#include "items/RadarItem.h"

namespace {

constexpr const LogSource& log = kManagerLog;

}  // namespace

bool MetadataMgr::SubscribeToGpsHal(LinxIpc& ipc) {
  subscribing::Trace(e_Process_GpsHal);
  GpsStatusItem item;
  if (!subscribing::Fetch<e_Process_GpsHal>(subscribing::MakeOnce(gpsHalClient, ipc), this, {&item}))
    return false;
  ReportGpsStatus(item, false);
  return true;
}

bool MetadataMgr::SubscribeToRadarHal(LinxIpc& ipc) {
  subscribing::Trace(e_Process_RadarHal);
  RadarItem item;
  if (!subscribing::Fetch<e_Process_RadarHal>(subscribing::MakeOnce(radarHalClient, ipc), this, {&item}))
    return false;
  ReportRadarEvent(item, false);
  return true;
}

void MetadataMgr::ReportGpsStatus(const GpsStatusItem& item, bool report) {
  log(kLogInfo, "Add in SystemTick to GpsStatusItem - tick = ", item.tick);
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
  log(kLogInfo, "Add in SystemTick to RadarItem - tick = ", item.tick);
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
