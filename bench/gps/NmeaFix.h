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

// Merges the sentences of one epoch, a moment of the receiver, into one reading.
//
// GGA, RMC and GLL each report a position and whether there is a fix. "No fix" in RMC or GLL wins over the
// other sentences; among the GGAs of several satellite systems the best quality wins. Each value comes from
// its best source: the position from GGA, else RMC, else GLL; quality, altitude and satellites used from GGA;
// the date from RMC; speed and course from RMC, else VTG. GSA and GSV stay valid until the next GSA and GSV.
// An epoch without speed and course repeats the last ones while the fix lasts, at most kMostRepeats times.
// Other missing values are not filled in: a missing altitude is kNoAltitude, a missing date 0.
class NmeaFix {
 public:
  enum class Taken { kNo, kYes, kMalformed };

  static constexpr unsigned int kMostRepeats = 20;  // of speed and course

  // Whether the sentence belongs to the next epoch: its time differs, or it has no time and its type was
  // already read since Begin.
  bool BelongsToNext(const NmeaSentence& sentence) const;

  // Reads a sentence. Other types and malformed sentences change nothing.
  Taken Take(const NmeaSentence& sentence);

  // Whether a sentence since Begin reported a position or no fix.
  bool Told() const { return !seen_.empty(); }
  // The time of the epoch in milliseconds of the day; nullopt when no sentence had it.
  std::optional<std::int64_t> TimeOfDayMs() const { return moment_.timeMs; }

  // Fills the item from the sentences since Begin. Without a fix the position does not change.
  void Fill(GpsStatusItem& item) const;

  // Begins the next epoch.
  void Begin();

 private:
  struct View {  // satellites of one system
    std::uint32_t count = 0;
    std::int32_t bestDecibels = GpsStatusItem::kNoSignal;
  };
  struct Moment {
    std::optional<std::int64_t> timeMs;
    bool refused = false;  // RMC or GLL reported no fix
    std::optional<NmeaPlace> ggaPlace;
    std::optional<NmeaPlace> rmcPlace;
    std::optional<NmeaPlace> gllPlace;
    std::optional<std::uint32_t> ggaQuality;
    std::optional<std::uint32_t> modeQuality;  // from RMC, else GLL
    std::optional<std::int64_t> altitudeDeciMetres;
    std::map<std::string, std::uint32_t> used;  // satellites by system
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

  std::set<std::string> seen_;  // types read in this epoch, as "GPGGA"
  Moment moment_;

  // Last values, from this epoch or an earlier one.
  NmeaMotion motion_;
  unsigned int motionRepeats_ = 0;
  std::uint32_t date_ = 0;
  std::int64_t dateTimeMs_ = 0;
  std::uint32_t dimensions_ = 0;  // 0: not known
  std::map<std::string, View, std::less<>> views_;
};

}  // namespace bench
