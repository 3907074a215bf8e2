#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "NmeaReports.h"
#include "NmeaSentence.h"
#include "items/GpsStatusItem.h"

namespace bench {

// Puts the sentences of a receiver together, for each moment (epoch) that they tell of.
//
// GGA, RMC and GLL each tell a place and whether there is a fix. A "no" of RMC or GLL outweighs the others;
// of the GGAs of several systems the best counts. The rest comes from the best source of the epoch: the place
// from GGA, else RMC, else GLL; quality, altitude and satellites used from GGA; speed, course and date from
// RMC, speed and course else from VTG. GSA and GSV hold until they come again. Speed and course that are
// told less often than the place are repeated while the fix lasts, at most kMostRepeats times. Any other
// value that is not told is not filled in: no altitude is kNoAltitude, no date 0.
class NmeaFix {
 public:
  enum class Taken { kNo, kYes, kMalformed };

  static constexpr unsigned int kMostRepeats = 20;  // of speed and course

  // Whether the sentence belongs to a later moment than those since Begin: its time differs, or it has no
  // time and its type comes again.
  bool BelongsToNext(const NmeaSentence& sentence) const;

  // Takes a sentence. Sentences of other types and malformed ones change nothing.
  Taken Take(const NmeaSentence& sentence);

  // Whether a sentence since Begin told a place, or that there is no fix.
  bool Told() const { return !seen_.empty(); }
  // The moment in milliseconds of the day; nullopt when it was not told.
  std::optional<std::int64_t> TimeOfDayMs() const { return moment_.timeMs; }

  // Fills in what was told since Begin. Without a fix the place stays as it was.
  void Fill(GpsStatusItem& item) const;

  // Begins the next moment.
  void Begin();

 private:
  struct View {  // the satellites of one system
    std::uint32_t count = 0;
    std::int32_t bestDecibels = GpsStatusItem::kNoSignal;
  };
  struct Moment {
    std::optional<std::int64_t> timeMs;
    bool refused = false;  // RMC or GLL said that there is no fix
    std::optional<NmeaPlace> ggaPlace;
    std::optional<NmeaPlace> rmcPlace;
    std::optional<NmeaPlace> gllPlace;
    std::optional<std::uint32_t> ggaQuality;
    std::optional<std::uint32_t> modeQuality;  // of RMC, else of GLL
    std::optional<std::int64_t> altitudeDeciMetres;
    std::map<std::string, std::uint32_t> used;  // satellites of each system
    NmeaMotion rmc;
    NmeaMotion vtg;
  };

  bool TakeGga(const NmeaSentence& sentence);
  bool TakeRmc(const NmeaSentence& sentence);
  bool TakeGll(const NmeaSentence& sentence);
  bool TakeVtg(const NmeaSentence& sentence);
  bool TakeGsa(const NmeaSentence& sentence);
  bool TakeGsv(const NmeaSentence& sentence);
  void Note(const NmeaSentence& sentence, const NmeaPosition& position);

  const std::optional<NmeaPlace>& Place() const;
  std::uint32_t Quality() const;
  NmeaMotion Motion() const;
  void FillMotion(GpsStatusItem& item) const;
  void FillView(GpsStatusItem& item) const;

  std::set<std::string> seen_;  // types of this moment, as "GPGGA"
  Moment moment_;

  // Told in this moment or an earlier one
  NmeaMotion motion_;
  unsigned int motionRepeats_ = 0;
  std::uint32_t date_ = 0;
  std::int64_t dateTimeMs_ = 0;
  std::uint32_t dimensions_ = 0;  // 0: not told
  std::map<std::string, View, std::less<>> views_;
};

}  // namespace bench
