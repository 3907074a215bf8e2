#pragma once

#include <cstdint>
#include <optional>

#include "NmeaSentence.h"

namespace bench {

// The values of one sentence, by its type. An empty field is nullopt. Each Read returns false when a field is
// malformed. From a sentence without a fix only time, date and satellites are read: some receivers fill the
// other fields with placeholders.

struct NmeaPlace {
  std::int64_t latitudeE4Min = 0;
  std::int64_t longitudeE4Min = 0;
};

struct NmeaMotion {
  std::optional<std::int64_t> knotsE3;
  std::optional<std::int64_t> kmhE3;
  std::optional<std::int64_t> courseE1;

  bool HasSpeed() const { return knotsE3 || kmhE3; }
};

// GGA, RMC and GLL. The quality has the numbers of GGA; the modes of RMC and GLL are converted.
struct NmeaPosition {
  std::optional<std::int64_t> timeMs;  // of the day
  std::optional<std::uint32_t> date;
  std::uint32_t quality = 0;
  std::optional<NmeaPlace> place;
  std::optional<std::int64_t> altitudeDeciMetres;
  std::int64_t satellitesUsed = 0;
  NmeaMotion motion;
};

bool ReadGga(const NmeaSentence& sentence, NmeaPosition& position);
bool ReadRmc(const NmeaSentence& sentence, NmeaPosition& position);
bool ReadGll(const NmeaSentence& sentence, NmeaPosition& position);

bool ReadVtg(const NmeaSentence& sentence, NmeaMotion& motion);

// `dimensions` is 2 or 3; 0: no fix.
bool ReadGsa(const NmeaSentence& sentence, std::uint32_t& dimensions);

struct NmeaSatellites {
  bool first = false;  // the first sentence of a group
  std::int64_t inView = 0;
  std::optional<std::int64_t> bestDecibels;
};
bool ReadGsv(const NmeaSentence& sentence, NmeaSatellites& satellites);

}  // namespace bench
