#include "NmeaFix.h"

#include <algorithm>
#include <cstdlib>

#include "GpsItem.h"

namespace {

using Text = std::string_view;

constexpr std::int64_t kMaxAltitudeDeciMetres = 1'000'000;

// A field that may be empty; false when there is something else in it than that.
template <typename Value, typename Read>
bool ReadIfThere(Text text, std::optional<Value>& value, Read read) {
  value.reset();
  if (text.empty()) return true;
  Value there{};
  if (!read(text, there)) return false;
  value = there;
  return true;
}

bool ReadIfThere(Text text, int decimals, std::optional<std::int64_t>& value) {
  return ReadIfThere(text, value, [decimals](Text word, std::int64_t& there) {
    return ReadDecimals(word, decimals, there);
  });
}

template <typename Place>
bool ReadPlace(const NmeaSentence& sentence, std::size_t first, std::optional<Place>& place) {
  return ReadIfThere(sentence.Field(first), place, [&](Text latitude, Place& there) {
    return ReadAngle(latitude, sentence.Field(first + 1), 'N', 'S', there.latitudeE4Min) &&
           ReadAngle(sentence.Field(first + 2), sentence.Field(first + 3), 'E', 'W', there.longitudeE4Min);
  });
}

// Of the mode that RMC and GLL tell; where they tell none, of a plain fix.
std::uint32_t QualityOfMode(Text mode) {
  struct Row {
    Text mode;
    std::uint32_t quality;
  };
  constexpr Row kRows[] = {{"N", 0}, {"D", 2}, {"P", 3}, {"R", 4}, {"F", 5}, {"E", 6}, {"M", 7}, {"S", 8}};
  const auto* row =
      std::find_if(std::begin(kRows), std::end(kRows), [mode](Row r) { return r.mode == mode; });
  return row == std::end(kRows) ? 1 : row->quality;
}

std::string NameOf(const NmeaSentence& sentence) {
  return std::string(sentence.talker) + std::string(sentence.type);
}

// Where the time stands in the types that tell a place; -1 in others.
int TimeField(Text type) {
  if (type == "GGA" || type == "RMC") return 0;
  return type == "GLL" ? 4 : -1;
}

}  // namespace

bool NmeaFix::TellsPlace(const NmeaSentence& sentence) {
  return TimeField(sentence.type) >= 0;
}

bool NmeaFix::BelongsToNext(const NmeaSentence& sentence) const {
  if (!TellsPlace(sentence)) return false;
  std::int64_t timeMs = 0;
  const bool timed =
      ReadTimeOfDay(sentence.Field(static_cast<std::size_t>(TimeField(sentence.type))), timeMs);
  return timed && timeMs_ ? *timeMs_ != timeMs : seen_.contains(NameOf(sentence));
}

NmeaFix::Taken NmeaFix::Take(const NmeaSentence& sentence) {
  struct Row {
    Text type;
    Taken (NmeaFix::*take)(const NmeaSentence&);
  };
  static constexpr Row kRows[] = {{"GGA", &NmeaFix::TakeGga}, {"RMC", &NmeaFix::TakeRmc},
                                  {"GLL", &NmeaFix::TakeGll}, {"VTG", &NmeaFix::TakeVtg},
                                  {"GSA", &NmeaFix::TakeGsa}, {"GSV", &NmeaFix::TakeGsv}};
  for (const Row& row : kRows) {
    if (row.type == sentence.type) return (this->*row.take)(sentence);
  }
  return Taken::kNo;
}

void NmeaFix::TakeMoment(const NmeaSentence& sentence, std::optional<std::int64_t> timeMs) {
  seen_.insert(NameOf(sentence));
  if (timeMs) timeMs_ = timeMs;
}

NmeaFix::Taken NmeaFix::TakeGga(const NmeaSentence& sentence) {
  std::optional<std::int64_t> timeMs;
  std::optional<std::int64_t> quality;
  std::optional<std::int64_t> used;
  std::optional<std::int64_t> altitude;
  std::optional<Place> place;
  if (!ReadIfThere(sentence.Field(0), timeMs, ReadTimeOfDay) || !ReadPlace(sentence, 1, place) ||
      !ReadIfThere(sentence.Field(5), 0, quality) || !ReadIfThere(sentence.Field(6), 0, used) ||
      !ReadIfThere(sentence.Field(8), 1, altitude) || quality.value_or(0) < 0 || quality.value_or(0) > 8 ||
      used.value_or(0) < 0 || std::abs(altitude.value_or(0)) > kMaxAltitudeDeciMetres) {
    return Taken::kMalformed;
  }
  TakeMoment(sentence, timeMs);
  // Each system may have a sentence of its own, with its satellites.
  const auto told = static_cast<std::uint32_t>(quality.value_or(0));
  ggaQuality_ = std::max(ggaQuality_.value_or(0), told);
  used_[std::string(sentence.talker)] = InField(used.value_or(0));
  if (told == 0 || !place) return Taken::kYes;
  ggaPlace_ = place;
  altitudeDeciMetres_ = altitude;
  return Taken::kYes;
}

NmeaFix::Taken NmeaFix::TakeRmc(const NmeaSentence& sentence) {
  std::optional<std::int64_t> timeMs;
  std::optional<std::uint32_t> date;
  std::optional<Place> place;
  Motion motion;
  if (!ReadIfThere(sentence.Field(0), timeMs, ReadTimeOfDay) || !ReadPlace(sentence, 2, place) ||
      !ReadIfThere(sentence.Field(6), 3, motion.knotsE3) ||
      !ReadIfThere(sentence.Field(7), 1, motion.courseE1) ||
      !ReadIfThere(sentence.Field(8), date, ReadDate)) {
    return Taken::kMalformed;
  }
  TakeMoment(sentence, timeMs);
  if (date) {
    date_ = *date;
    dateTimeMs_ = timeMs.value_or(0);
  }
  rmcQuality_ = QualityOfMode(sentence.Field(11));
  if (sentence.Field(1) != "A" || *rmcQuality_ == 0) {
    refused_ = true;
  } else {
    rmcPlace_ = place;
    rmc_ = motion;
  }
  return Taken::kYes;
}

NmeaFix::Taken NmeaFix::TakeGll(const NmeaSentence& sentence) {
  std::optional<std::int64_t> timeMs;
  std::optional<Place> place;
  if (!ReadPlace(sentence, 0, place) || !ReadIfThere(sentence.Field(4), timeMs, ReadTimeOfDay)) {
    return Taken::kMalformed;
  }
  TakeMoment(sentence, timeMs);
  if (sentence.Field(5) != "A" || QualityOfMode(sentence.Field(6)) == 0) {
    refused_ = true;
  } else {
    gllPlace_ = place;
    if (!rmcQuality_) rmcQuality_ = QualityOfMode(sentence.Field(6));
  }
  return Taken::kYes;
}

NmeaFix::Taken NmeaFix::TakeVtg(const NmeaSentence& sentence) {
  Motion motion;
  if (sentence.Field(1) != "T" || !ReadIfThere(sentence.Field(0), 1, motion.courseE1) ||
      !ReadIfThere(sentence.Field(4), 3, motion.knotsE3) ||
      !ReadIfThere(sentence.Field(6), 3, motion.kmhE3)) {
    return Taken::kMalformed;
  }
  vtg_ = motion;
  return Taken::kYes;
}

NmeaFix::Taken NmeaFix::TakeGsa(const NmeaSentence& sentence) {
  constexpr std::size_t kFields = 14;  // mode, dimensions, twelve satellites; then precisions
  const Text dimensions = sentence.Field(1);
  if (sentence.fields.size() < kFields || (dimensions != "1" && dimensions != "2" && dimensions != "3")) {
    return Taken::kMalformed;
  }
  dimensions_ = dimensions == "1" ? 0 : static_cast<std::uint32_t>(dimensions[0] - '0');
  return Taken::kYes;
}

NmeaFix::Taken NmeaFix::TakeGsv(const NmeaSentence& sentence) {
  constexpr std::size_t kFirst = 3;  // number, elevation, azimuth, decibels of a satellite, up to four times
  std::int64_t count = 0;
  if (!ReadDecimals(sentence.Field(2), 0, count) || count < 0) return Taken::kMalformed;
  std::int32_t best = GpsStatusItem::kNoSignal;
  for (std::size_t field = kFirst; field + 3 < sentence.fields.size(); field += 4) {
    std::optional<std::int64_t> decibels;
    if (!ReadIfThere(sentence.Field(field + 3), 0, decibels)) return Taken::kMalformed;
    if (decibels) best = std::max<std::int32_t>(best, InField(*decibels));
  }
  View& view = views_[std::string(sentence.talker)];
  if (sentence.Field(1) == "1") view.bestDecibels = GpsStatusItem::kNoSignal;
  view.bestDecibels = std::max(view.bestDecibels, best);
  view.count = InField(count);
  return Taken::kYes;
}

void NmeaFix::Fill(GpsStatusItem& item) const {
  const std::optional<Place>& place = ggaPlace_ ? ggaPlace_ : rmcPlace_ ? rmcPlace_ : gllPlace_;
  const std::uint32_t quality = refused_ || !place ? 0 : ggaQuality_.value_or(rmcQuality_.value_or(0));
  LoseFix(item);
  item.quality = quality;
  const bool dateHolds = timeMs_ && *timeMs_ >= dateTimeMs_;
  item.utcDate = dateHolds ? date_ : 0;
  item.utcTimeOfDayMs = static_cast<std::uint32_t>(timeMs_.value_or(0));
  FillView(item);
  if (!item.HasFix()) return;
  PutPlace(item, place->latitudeE4Min, place->longitudeE4Min);
  FillMotion(item);
  item.valid = 1;
  for (const auto& [system, used] : used_) item.satellitesUsed += used;
  if (altitudeDeciMetres_) item.altitudeDeciMetres = static_cast<std::int32_t>(*altitudeDeciMetres_);
  item.fixDimensions = dimensions_ != 0 ? dimensions_ : altitudeDeciMetres_ ? 3 : 2;
}

void NmeaFix::FillMotion(GpsStatusItem& item) const {
  constexpr std::int64_t kKmhE3PerKnot = 1852;
  const std::int64_t knotsE3 = rmc_.knotsE3.value_or(vtg_.knotsE3.value_or(0));
  const bool computed = rmc_.knotsE3 || !vtg_.kmhE3;
  item.speedDeciKnots = InField((knotsE3 + 50) / 100);
  item.speedDeciKmh =
      InField(computed ? (knotsE3 * kKmhE3PerKnot + 50'000) / 100'000 : (*vtg_.kmhE3 + 50) / 100);
  const std::int64_t course = rmc_.courseE1.value_or(vtg_.courseE1.value_or(0));
  item.courseDeciDegrees = InField(course % 3600);
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
  seen_.clear();
  timeMs_.reset();
  refused_ = false;
  ggaPlace_.reset();
  rmcPlace_.reset();
  gllPlace_.reset();
  ggaQuality_.reset();
  rmcQuality_.reset();
  altitudeDeciMetres_.reset();
  used_.clear();
  rmc_ = vtg_ = {};
}
