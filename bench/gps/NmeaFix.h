#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "NmeaSentence.h"
#include "items/GpsStatusItem.h"

// What the sentences of a receiver tell, put together for each moment that they tell of (an epoch).
//
// GGA, RMC and GLL each tell a place and whether it is good. An RMC or GLL that says no outweighs the
// others; of the GGAs of several systems the best counts. The rest comes from the best source of the epoch:
// the place from GGA, else RMC, else GLL; quality, altitude and satellites used from GGA; speed, course and
// date from RMC, speed and course else from VTG. What GSA and GSV tell holds until they tell again. Nothing
// told is filled in: no course is 0, no altitude kNoAltitude, no date 0.
class NmeaFix {
 public:
  enum class Taken { kNo, kYes, kMalformed };

  // Whether a sentence of this type tells a place, and so belongs to one moment.
  static bool TellsPlace(const NmeaSentence& sentence);

  // Whether the sentence belongs to a later moment than those since Begin: its time is another one, or
  // there is no time and it comes again.
  bool BelongsToNext(const NmeaSentence& sentence) const;

  // Takes note of a sentence; one of another type is not taken, and of a malformed one nothing is.
  Taken Take(const NmeaSentence& sentence);

  // Something told a place since Begin, or that there is none.
  bool Told() const { return !seen_.empty(); }
  // The moment in milliseconds of the day, where it was told.
  std::optional<std::int64_t> TimeOfDayMs() const { return timeMs_; }

  // Fills in what was told since Begin. Without a fix the place stays as it was.
  void Fill(GpsStatusItem& item) const;

  // The next moment begins.
  void Begin();

 private:
  struct Place {
    std::int64_t latitudeE4Min = 0;
    std::int64_t longitudeE4Min = 0;
  };
  struct View {  // of the satellites of one system
    std::uint16_t count = 0;
    std::int32_t bestDecibels = GpsStatusItem::kNoSignal;
  };
  struct Motion {
    std::optional<std::int64_t> knotsE3;
    std::optional<std::int64_t> kmhE3;
    std::optional<std::int64_t> courseE1;
  };

  Taken TakeGga(const NmeaSentence& sentence);
  Taken TakeRmc(const NmeaSentence& sentence);
  Taken TakeGll(const NmeaSentence& sentence);
  Taken TakeVtg(const NmeaSentence& sentence);
  Taken TakeGsa(const NmeaSentence& sentence);
  Taken TakeGsv(const NmeaSentence& sentence);
  void TakeMoment(const NmeaSentence& sentence, std::optional<std::int64_t> timeMs);
  void FillMotion(GpsStatusItem& item) const;
  void FillView(GpsStatusItem& item) const;

  // Of this moment
  std::set<std::string> seen_;  // "GPGGA"
  std::optional<std::int64_t> timeMs_;
  bool refused_ = false;  // one said that there is no fix
  std::optional<Place> ggaPlace_;
  std::optional<Place> rmcPlace_;
  std::optional<Place> gllPlace_;
  std::optional<std::uint32_t> ggaQuality_;
  std::optional<std::uint32_t> rmcQuality_;
  std::optional<std::int64_t> altitudeDeciMetres_;
  std::map<std::string, std::uint32_t> used_;  // satellites of each system
  Motion rmc_;
  Motion vtg_;

  // Of this one or an earlier one
  std::uint32_t date_ = 0;
  std::int64_t dateTimeMs_ = 0;
  std::uint32_t dimensions_ = 0;  // 0: not told
  std::map<std::string, View, std::less<>> views_;
};
