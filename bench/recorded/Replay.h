#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Drive.h"
#include "ItemsOfRows.h"
#include "Messages.h"
#include "Position.h"
#include "RunReader.h"
#include "Selection.h"

namespace bench {

struct HowToPlay {
  std::optional<reader::Selection> only;
  std::optional<reader::Selection> without;
  bool moveTicks = true;     // to now, all by the same time
  bool loop = false;         // plays it again and again
  bool beginIsOpen = false;  // a user starts MetadataMgr: the ticks are moved once it is at full run
};

// Plays one run. Reads it row by row: memory does not depend on its length. Does not change the recordings.
class Replay {
 public:
  // The messages must outlive the replay.
  Replay(reader::Run run, reader::Range range, HowToPlay how, reader::Messages& messages);

  // Reads up to the first event. Must come first.
  enum class Begun {
    kYes,
    kWithoutFullState,  // from the first event
    kNoStart,           // no events, and no full state
    kOutside            // nothing of the run is within the range
  };
  Begun Begin();
  // MetadataMgr is killed at the end.
  void EndsInKill(bool kill) { endsInKill_ = kill; }
  void AddToName(const std::string& text) { name_ += text; }
  // The replay must outlive the drive.
  bench::Drive Drive();

 private:
  void ReadToBegin(bool needsFullState);
  std::int64_t EndTick() const;
  bool IsPlayed(const Row& row) const;
  bool Next(DriveLine& line);
  bool NextEvent(DriveLine& line);
  void PlayAgain();
  Words WordsOf(const Row& row);

  const reader::Run run_;
  std::string name_;
  const reader::Range range_;
  const HowToPlay options_;
  reader::Messages& messages_;
  std::unique_ptr<reader::RunReader> reader_;
  ItemsOfRows items_;
  Row row_;  // the next one
  bool hasRow_ = false;
  bool full_ = false;  // a full state was read
  bool endsInKill_ = false;
  bool begun_ = false;
  std::int64_t beginTick_ = 0;  // arrival of the first event
  std::int64_t lastMs_ = 0;     // of the drive
  std::int64_t roundMs_ = 0;    // begin of this round of a loop
  std::uint32_t shiftMs_ = 0;
  std::vector<Words> again_;  // values at the begin of a further round, last first
};

}  // namespace bench
