// Report operations that take a whole item.

#include "GpsTime.h"
#include "Store.h"
#include "Tables.h"
#include "items/ConfigurationItems.h"
#include "items/GpsStatusItem.h"
#include "items/VideoMgrStreamQualityItem.h"
#include "store/DataStoreNormal.h"

using store::EventOf;
using store::Row;

namespace {

static_assert(store::kNoAltitudeDm == GpsStatusItem::kNoAltitude);

// Ten-thousandths of a minute, negative for south and west.
std::int64_t SignedAngle(unsigned int degrees, unsigned int minutes, unsigned int fraction, bool positive) {
  const std::int64_t angle = (std::int64_t{degrees} * 60 + minutes) * 10000 + fraction;
  return positive ? angle : -angle;
}

}  // namespace

void DataStoreNormal::ReportGps(const GpsStatusItem& position, unsigned int tick, bool report) {
  const GpsStatusItem& p = position;
  if (const auto utcMs = store::UtcMsOf(p)) store_->AddGpsTime(tick, *utcMs);
  const bool north = p.latitudeHemisphere == GpsStatusItem::kNorthOrEast;
  const bool east = p.longitudeHemisphere == GpsStatusItem::kNorthOrEast;
  store_->Add({EventOf(report), tick},
              Row<store::kGpsTable>(
                  SignedAngle(p.latitudeDegrees, p.latitudeMinutes, p.latitudeMinuteFraction, north),
                  SignedAngle(p.longitudeDegrees, p.longitudeMinutes, p.longitudeMinuteFraction, east),
                  p.altitudeDeciMetres, p.speedDeciKmh, p.speedDeciKnots, p.courseDeciDegrees, p.quality,
                  p.fixDimensions, p.satellitesUsed, p.satellitesInView, p.signalDecibels, p.utcDate,
                  p.utcTimeOfDayMs, p.valid));
}

void DataStoreNormal::ReportStreamQualityItem(VideoMgrStreamQualityItem& quality, bool report) {
  int number = 0;
  for (const VideoMgrStreamQualityItem::Stream& stream : quality.streams) {
    store_->Add({EventOf(report), quality.tick},
                Row<store::kStreamQualityTable>(number++, stream.widthPixels, stream.heightPixels,
                                                stream.framesPerSecond, stream.bitRateKbps));
  }
}

void DataStoreNormal::ReportVehicleInfo(const VehicleInfo& vehicle, bool report) {
  store_->Add({EventOf(report)},
              Row<store::kVehicleTable>(vehicle.unitId.View(), vehicle.licensePlate.View()));
}

void DataStoreNormal::ReportSystemInfo(const SystemInfo& system, bool report) {
  store_->Add({EventOf(report)},
              Row<store::kSystemTable>(system.deviceName.View(), system.softwareVersion.View()));
}

void DataStoreNormal::ReportDepartmentInfo(const DepartmentInfo& department, bool report) {
  store_->Add({EventOf(report)},
              Row<store::kDepartmentTable>(department.name.View(), department.division.View()));
}

void DataStoreNormal::ReportOfficerInfo(const Officer& officer, bool report) {
  store_->Add({EventOf(report)}, Row<store::kOfficerTable>(officer.name.View(), officer.badgeNumber.View()));
}

void DataStoreNormal::ReportVideoRecordingSettings(const VideoRecordingSettings& settings, bool report) {
  store_->Add({EventOf(report)},
              Row<store::kRecordingSettingsTable>(settings.preEventSeconds, settings.postEventSeconds,
                                                  settings.widthPixels, settings.heightPixels,
                                                  settings.framesPerSecond, settings.bitRateKbps));
}
