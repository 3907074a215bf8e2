#include "ItemHandler.h"
#include "ManagerLog.h"
#include "SharedRecord.h"
#include "items/GpsStatusItem.h"
#include "items/RadarItem.h"

namespace {

constexpr const LogSource& log = kManagerLog;

constexpr unsigned char kSourceGps = 1;
constexpr unsigned char kSourceRadar = 2;
constexpr unsigned char kRadarNumber = 1;

}  // namespace

void MetadataMgr::ReportGpsStatus(const GpsStatusItem& item, bool report) {
  log(kLogInfo, "Add in SystemTick to GpsStatusItem - tick = ", item.tick);
  if (item.HasFix()) {
    const auto speedKmh = static_cast<unsigned short>(item.speedDeciKmh / 10);
    dataStore_.ReportGpsState(true, report);
    dataStore_.ReportGps(item, item.tick, report);
    dataStore_.ReportSpeed(kSourceGps, speedKmh, report, item.tick, e_Tag_None);
  } else {
    dataStore_.ReportGpsState(false, report);
    dataStore_.ReportValidSpeed(kSourceGps, false);
  }
  unsigned char* items = sharedMem_.MetadataItems(true);
  if (items != nullptr) sharedrecord::WriteGps(items, item);
}

void MetadataMgr::ReportRadarEvent(const RadarItem& item, bool report) {
  log(kLogInfo, "Add in SystemTick to RadarItem - tick = ", item.tick);
  if (item.Valid()) {
    dataStore_.ReportRadarState(kRadarNumber, true, report);
    dataStore_.ReportRadar(kRadarNumber, item.targetSpeedKmh, item.fastestSpeedKmh, item.lockedSpeedKmh,
                           e_RADAR_DIRECTION_Unknown, report, item.tick, e_Tag_None);
    dataStore_.ReportSpeed(kSourceRadar, item.patrolSpeedKmh, report, item.tick, e_Tag_None);
  } else {
    dataStore_.ReportRadarState(kRadarNumber, false, report);
    dataStore_.ReportValidSpeed(kSourceRadar, false);
  }
  unsigned char* items = sharedMem_.MetadataItems(true);
  if (items != nullptr) sharedrecord::WriteRadar(items, item);
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
