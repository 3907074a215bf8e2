#include "NmeaFix.h"

#include <algorithm>

#include "GpsItem.h"

namespace bench {

namespace {

std::string NameOf(const NmeaSentence& sentence) {
  return std::string(sentence.talker) + std::string(sentence.type);
}

// The index of the time field in sentences with a position; -1 for other types.
int TimeField(std::string_view type) {
  if (type == "GGA" || type == "RMC") return 0;
  return type == "GLL" ? 4 : -1;
}

}  // namespace

bool NmeaFix::BelongsToNext(const NmeaSentence& sentence) const {
  const int field = TimeField(sentence.type);
  if (field < 0) return false;
  std::int64_t timeMs = 0;
  const bool timed = ReadTimeOfDay(sentence.Field(static_cast<std::size_t>(field)), timeMs);
  return timed && moment_.timeMs ? *moment_.timeMs != timeMs : seen_.contains(NameOf(sentence));
}

NmeaFix::Taken NmeaFix::Take(const NmeaSentence& sentence) {
  struct Row {
    std::string_view type;
    bool (NmeaFix::*take)(const NmeaSentence&);
  };
  static constexpr Row kRows[] = {{"GGA", &NmeaFix::TakeGga}, {"RMC", &NmeaFix::TakeRmc},
                                  {"GLL", &NmeaFix::TakeGll}, {"VTG", &NmeaFix::TakeVtg},
                                  {"GSA", &NmeaFix::TakeGsa}, {"GSV", &NmeaFix::TakeGsv}};
  for (const Row& row : kRows) {
    if (row.type == sentence.type) return (this->*row.take)(sentence) ? Taken::kYes : Taken::kMalformed;
  }
  return Taken::kNo;
}

void NmeaFix::Note(const NmeaSentence& sentence, const NmeaPosition& position) {
  seen_.insert(NameOf(sentence));
  if (position.timeMs) moment_.timeMs = position.timeMs;
  if (!position.date) return;
  date_ = *position.date;
  dateTimeMs_ = position.timeMs.value_or(0);
}

bool NmeaFix::TakeGga(const NmeaSentence& sentence) {
  NmeaPosition position;
  if (!ReadGga(sentence, position)) return false;
  Note(sentence, position);
  // Each satellite system may send its own GGA, with its own satellites.
  moment_.ggaQuality = std::max(moment_.ggaQuality.value_or(0), position.quality);
  moment_.used[std::string(sentence.talker)] = InField(position.satellitesUsed);
  if (!position.place) return true;
  moment_.ggaPlace = position.place;
  moment_.altitudeDeciMetres = position.altitudeDeciMetres;
  return true;
}

bool NmeaFix::TakeRmc(const NmeaSentence& sentence) {
  NmeaPosition position;
  if (!ReadRmc(sentence, position)) return false;
  Note(sentence, position);
  moment_.modeQuality = position.quality;
  if (position.quality == 0) {
    moment_.refused = true;
  } else {
    moment_.rmcPlace = position.place;
    moment_.rmc = position.motion;
  }
  return true;
}

bool NmeaFix::TakeGll(const NmeaSentence& sentence) {
  NmeaPosition position;
  if (!ReadGll(sentence, position)) return false;
  Note(sentence, position);
  if (position.quality == 0) {
    moment_.refused = true;
  } else {
    moment_.gllPlace = position.place;
    if (!moment_.modeQuality) moment_.modeQuality = position.quality;
  }
  return true;
}

bool NmeaFix::TakeVtg(const NmeaSentence& sentence) {
  NmeaMotion motion;
  if (!ReadVtg(sentence, motion)) return false;
  moment_.vtg = motion;
  return true;
}

bool NmeaFix::TakeGsa(const NmeaSentence& sentence) {
  return ReadGsa(sentence, dimensions_);
}

bool NmeaFix::TakeGsv(const NmeaSentence& sentence) {
  NmeaSatellites satellites;
  if (!ReadGsv(sentence, satellites)) return false;
  View& view = views_[std::string(sentence.talker)];
  if (satellites.first) view.bestDecibels = GpsStatusItem::kNoSignal;
  if (satellites.bestDecibels) {
    view.bestDecibels = std::max<std::int32_t>(view.bestDecibels, InField(*satellites.bestDecibels));
  }
  view.count = InField(satellites.inView);
  return true;
}

const std::optional<NmeaPlace>& NmeaFix::Place() const {
  if (moment_.ggaPlace) return moment_.ggaPlace;
  return moment_.rmcPlace ? moment_.rmcPlace : moment_.gllPlace;
}

std::uint32_t NmeaFix::Quality() const {
  if (moment_.refused || !Place()) return 0;
  return moment_.ggaQuality.value_or(moment_.modeQuality.value_or(0));
}

NmeaMotion NmeaFix::Motion() const {
  const NmeaMotion& rmc = moment_.rmc;
  const NmeaMotion& vtg = moment_.vtg;
  if (!rmc.HasSpeed() && !vtg.HasSpeed()) return motion_;
  NmeaMotion told = rmc.HasSpeed() ? rmc : vtg;
  told.courseE1 = rmc.courseE1 ? rmc.courseE1 : vtg.courseE1;
  return told;
}

void NmeaFix::Fill(GpsStatusItem& item) const {
  LoseFix(item);
  item.quality = Quality();
  const bool dateHolds = moment_.timeMs && *moment_.timeMs >= dateTimeMs_;
  item.utcDate = dateHolds ? date_ : 0;
  item.utcTimeOfDayMs = static_cast<std::uint32_t>(moment_.timeMs.value_or(0));
  FillView(item);
  if (!item.HasFix()) return;
  PutPlace(item, Place()->latitudeE4Min, Place()->longitudeE4Min);
  FillMotion(item);
  item.valid = 1;
  for (const auto& [system, used] : moment_.used) item.satellitesUsed += used;
  const auto& altitude = moment_.altitudeDeciMetres;
  if (altitude) item.altitudeDeciMetres = static_cast<std::int32_t>(*altitude);
  item.fixDimensions = dimensions_ != 0 ? dimensions_ : altitude ? 3 : 2;
}

void NmeaFix::FillMotion(GpsStatusItem& item) const {
  constexpr std::int64_t kKmhE3PerKnot = 1852;
  const NmeaMotion motion = Motion();
  const std::int64_t knotsE3 = motion.knotsE3.value_or(0);
  item.speedDeciKnots = InField((knotsE3 + 50) / 100);
  item.speedDeciKmh =
      InField(motion.kmhE3 ? (*motion.kmhE3 + 50) / 100 : (knotsE3 * kKmhE3PerKnot + 50'000) / 100'000);
  item.courseDeciDegrees = InField(motion.courseE1.value_or(0) % 3600);
}

void NmeaFix::FillView(GpsStatusItem& item) const {
  std::int64_t count = 0;
  for (const auto& [system, view] : views_) {
    count += view.count;
    item.signalDecibels = std::max(item.signalDecibels, view.bestDecibels);
  }
  item.satellitesInView = InField(count);
}

void NmeaFix::Begin() {
  const bool told = moment_.rmc.HasSpeed() || moment_.vtg.HasSpeed();
  motion_ = Motion();
  motionRepeats_ = told ? 0 : motionRepeats_ + 1;
  if (Quality() == 0 || motionRepeats_ >= kMostRepeats) motion_ = {};
  seen_.clear();
  moment_ = {};
}

}  // namespace bench
