#include "MetadataMgr.h"
#include "ProcessState.h"
#include "SharedRecord.h"
#include "Simulator.h"
#include "SpeedSources.h"

namespace {

using sharedrecord::Field;

// In the order of the reports; the tag for off is one higher.
constexpr std::array kInputTags = {e_Tag_LightsOn, e_Tag_BrakesOn, e_Tag_SirenOn,
                                   e_Tag_AuxOn,    e_Tag_DoorOpen, e_Tag_IgnitionOn};

constexpr Field kStandingStill[] = {{sharedrecord::kSpeedDeciKnots, 0}, {sharedrecord::kSpeedDeciKmh, 0}};

void ReportInputs(DataStore& store, unsigned int tick) {
  for (std::size_t i = 0; i < kInputTags.size(); ++i) {
    const bool on = gSimulator.inputs[i];
    store.ReportStateData(static_cast<e_Tag>(kInputTags[i] + (on ? 0U : 1U)), true, tick);
  }
}

// Writes the longitude's fraction also in place of its minutes.
void WritePosition(unsigned char* record, const GpsStatusItem& position, std::uint16_t speed) {
  const Field fields[] = {
      {sharedrecord::kGpsValid, 1},
      {sharedrecord::kLatitudeHemisphere, sharedrecord::NorthOrSouth(position)},
      {sharedrecord::kLatitudeDegrees, position.latitudeDegrees},
      {sharedrecord::kLatitudeMinutes, position.latitudeMinutes},
      {sharedrecord::kLatitudeMinuteFraction, position.latitudeMinuteFraction},
      {sharedrecord::kLongitudeHemisphere, sharedrecord::EastOrWest(position)},
      {sharedrecord::kLongitudeDegrees, position.longitudeDegrees},
      {sharedrecord::kLongitudeMinutes, position.longitudeMinuteFraction},
      {sharedrecord::kLongitudeMinuteFraction, position.longitudeMinuteFraction},
      {sharedrecord::kSpeedDeciKnots, speed},
      {sharedrecord::kQuality, 1},
      {sharedrecord::kFixDimensions, 2},
      {sharedrecord::kAltitudeDeciMetres, 0},
      {sharedrecord::kSatellitesUsed, 5},
      {sharedrecord::kSignalDecibels, 21},
      {sharedrecord::kSpeedDeciKmh, speed},
  };
  sharedrecord::Write(record, fields);
}

// Reports the speed unchanged; ReportGpsStatus divides that of a real reading by ten.
void ReportGps(DataStore& store, unsigned char* record, unsigned int tick) {
  if (gSimulator.gpsFix) {
    const auto speed = static_cast<std::uint16_t>(gSimulator.speed.value);
    store.ReportGpsState(true, true);
    store.ReportGps(*gSimulator.position, tick, true);
    store.ReportSpeed(kSourceGps, speed, true, tick, e_Tag_None);
    WritePosition(record, *gSimulator.position, speed);
  } else {
    store.ReportGpsState(false, true);
    store.ReportValidSpeed(kSourceGps, false);
    sharedrecord::Write(record, kStandingStill);
  }
}

void ReportMicrophones(MetadataMgr& manager, unsigned int tick) {
  for (unsigned int i = 0; i < gSimulator.microphonesActive.size(); ++i) {
    manager.ReportMicState(e_MicrophonePosition{i}, true, gSimulator.microphonesActive[i], tick, true);
  }
}

// Unlike a real reading, reports no tick, and writes the vehicle's own speed only to the shared record.
void ReportRadar(DataStore& store, unsigned char* record) {
  if (!gSimulator.radarActive) {
    store.ReportRadarState(kRadarNumber, false, true);
    store.ReportValidSpeed(kSourceRadar, false);
    return;
  }
  const auto speed = [](std::size_t i) {
    return static_cast<std::uint16_t>(gSimulator.radarSpeeds[i].value);
  };
  const std::uint16_t fastest = speed(0);
  const std::uint16_t patrol = speed(1);
  const std::uint16_t target = speed(2);
  const std::uint16_t locked = speed(3);
  store.ReportRadarState(kRadarNumber, true, true);
  store.ReportRadar(kRadarNumber, target, fastest, locked, e_RADAR_DIRECTION_Unknown, true, 0, e_Tag_None);
  const Field fields[] = {{sharedrecord::kPatrolSpeedKmh, patrol},
                          {sharedrecord::kTargetSpeedKmh, target},
                          {sharedrecord::kFastestSpeedKmh, fastest},
                          {sharedrecord::kLockedSpeedKmh, locked}};
  sharedrecord::Write(record, fields);
}

}  // namespace

void MetadataMgr::SimulateData() {
  const unsigned int tick = systick.SystemTick();
  unsigned char* record = sharedMem.MetadataItems(true);
  if (!gRadarOnlyMode) {
    gSimulator.StepInputs();
    ReportInputs(dataStore, tick);
    gSimulator.StepGps(record);
    ReportGps(dataStore, record, tick);
    gSimulator.StepMicrophones();
    ReportMicrophones(*this, tick);
    if (gSimulator.DrawBookmark()) dataStore.ReportBookmark(tick);
  }
  gSimulator.StepRadar(record);
  ReportRadar(dataStore, record);
}
