#include "Simulator.h"

#include <algorithm>
#include <iterator>

#include "SharedRecord.h"
#include "items/RadarItem.h"

Simulator gSimulator;

namespace {

using sharedrecord::Field;

// A row applies to the drawn numbers up to `last` that no earlier row covers.

struct GpsRow {
  int last;
  std::optional<bool> fix;  // nothing: unchanged
  bool drives;
};
constexpr GpsRow kGpsRows[] = {{39, true, false}, {80, {}, false}, {90, {}, true}, {100, false, true}};

struct MicrophoneRow {
  int last;
  std::size_t microphone;
};
constexpr MicrophoneRow kMicrophoneRows[] = {{4, 0}, {9, 1}, {14, 2}, {19, 3}};

constexpr std::uint16_t kUnchanged = 0;
constexpr std::uint16_t kReading = 1;
constexpr std::uint16_t kDegraded = 8;
constexpr std::uint16_t kNoReading = RadarItem::kStatusInvalid;

struct RadarRow {
  int last;
  std::uint16_t status;       // kNoReading: the radar is inactive
  std::array<bool, 4> moves;  // which of the speeds change
};
constexpr RadarRow kRadarRows[] = {
    {4, kNoReading, {false, false, false, false}}, {20, kDegraded, {false, false, false, false}},
    {24, kDegraded, {false, true, false, true}},   {40, kUnchanged, {false, true, false, true}},
    {50, kUnchanged, {false, true, true, true}},   {60, kUnchanged, {true, true, true, true}},
    {100, kReading, {true, true, true, true}},
};

constexpr Field kStartFields[] = {{sharedrecord::kQuality, 1},
                                  {sharedrecord::kFixDimensions, 2},
                                  {sharedrecord::kAltitudeDeciMetres, 0},
                                  {sharedrecord::kSatellitesUsed, 5},
                                  {sharedrecord::kSignalDecibels, 21},
                                  {sharedrecord::kSatellitesInView, 5}};
constexpr Field kFixLostFields[] = {
    {sharedrecord::kQuality, 0},
    {sharedrecord::kFixDimensions, 0},
    {sharedrecord::kAltitudeDeciMetres, GpsStatusItem::kNoAltitude},
    {sharedrecord::kSatellitesUsed, 0},
    {sharedrecord::kSignalDecibels, static_cast<std::uint32_t>(GpsStatusItem::kNoSignal)}};

// The row of a number, counted from 1; the table's end when the number is above all rows.
template <typename Row, std::size_t N>
const Row* Find(const Row (&rows)[N], int number) {
  return std::find_if(std::begin(rows), std::end(rows),
                      [number](const Row& row) { return number <= row.last; });
}

GpsStatusItem StartPosition() {
  GpsStatusItem position;
  position.latitudeDegrees = 10;
  position.latitudeMinutes = 20;
  position.latitudeHemisphere = GpsStatusItem::kNorthOrEast;
  position.longitudeDegrees = 15;
  position.longitudeMinutes = 25;
  position.longitudeHemisphere = GpsStatusItem::kNorthOrEast;
  return position;
}

// Carries into the minutes above a fraction of 50, like seconds in steps of ten, so a simulated track jumps.
void Advance(std::uint16_t& degrees, std::uint16_t& minutes, std::uint32_t& fraction) {
  fraction += 10;
  if (fraction <= 50) return;
  fraction = 0;
  ++minutes;
  if (minutes <= 59) return;
  minutes = 0;
  ++degrees;
}

}  // namespace

int RandomSource::Draw(int limit) const {
  seed(static_cast<unsigned int>(now(nullptr)));
  return next() % limit;
}

void Ramp::Move() {
  value += rising ? step : -step;
  if (value > top) {
    rising = false;
  } else if (value < 1) {
    rising = true;
  }
}

void Simulator::StepInputs() {
  const auto drawn = static_cast<std::size_t>(random.Draw(30));
  if (drawn < inputs.size()) inputs[drawn] = !inputs[drawn];
}

void Simulator::StepGps(unsigned char* record) {
  const GpsRow& row = *Find(kGpsRows, random.Draw(100) + 1);
  if (!position) {
    position = StartPosition();
    sharedrecord::Write(record, kStartFields);
  }
  if (row.fix) gpsFix = *row.fix;
  if (row.fix == false) sharedrecord::Write(record, kFixLostFields);
  if (!row.drives) return;
  speed.Move();
  Advance(position->latitudeDegrees, position->latitudeMinutes, position->latitudeMinuteFraction);
  Advance(position->longitudeDegrees, position->longitudeMinutes, position->longitudeMinuteFraction);
}

void Simulator::StepMicrophones() {
  const MicrophoneRow* row = Find(kMicrophoneRows, random.Draw(100) + 1);
  if (row == std::end(kMicrophoneRows)) return;
  bool& active = microphonesActive[row->microphone];
  active = !active;
}

bool Simulator::DrawBookmark() const {
  return random.Draw(100) > 89;
}

void Simulator::StepRadar(unsigned char* record) {
  const RadarRow& row = *Find(kRadarRows, random.Draw(100) + 1);
  if (row.status != kUnchanged) {
    radarActive = row.status != kNoReading;
    const Field status[] = {{sharedrecord::kRadarStatus, row.status}};
    sharedrecord::Write(record, status);
  }
  for (std::size_t i = 0; i < radarSpeeds.size(); ++i) {
    if (row.moves[i]) radarSpeeds[i].Move();
  }
}
