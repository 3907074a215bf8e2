#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Drive.h"
#include "Instant.h"
#include "ItemsOfRows.h"
#include "Messages.h"
#include "RunReader.h"
#include "Selection.h"

namespace bench {

struct ReplayOptions {
  std::vector<std::string> recordings;
  std::optional<reader::Instant> from;
  std::optional<reader::Instant> to;
  std::optional<reader::Selection> only;
  std::optional<reader::Selection> without;
  bool moveTicks = true;     // to now, all by the same time
  bool loop = false;         // plays it again and again
  bool beginIsOpen = false;  // a user starts MetadataMgr: the ticks are moved once it is at full run
};

// Plays the first run of recordings. Reads it row by row: memory does not depend on its length. Does not
// change the recordings.
class Replay {
 public:
  explicit Replay(ReplayOptions options);

  // Says on standard error what is wrong with the recordings. Returns false if nothing of them can be played.
  bool Open();
  // The replay must outlive the drive.
  bench::Drive Drive();
  // Whether everything could be read so far.
  bool Good() const { return messages_.Status() == 0; }

 private:
  void Judge();
  // Reads up to the first event.
  bool Begin();
  std::int64_t EndTick() const;
  bool IsPlayed(const Row& row) const;
  bool Next(DriveLine& line);
  bool NextEvent(DriveLine& line);
  void PlayAgain();
  Words WordsOf(const Row& row);

  ReplayOptions options_;
  reader::Messages messages_;
  std::vector<reader::Run> runs_;
  reader::Range range_;
  std::unique_ptr<reader::RunReader> reader_;
  ItemsOfRows items_;
  Row row_;  // the next one
  bool hasRow_ = false;
  bool cleanEnd_ = false;
  bool begun_ = false;
  std::int64_t beginTick_ = 0;  // arrival of the first event
  std::int64_t lastMs_ = 0;     // of the drive
  std::int64_t roundMs_ = 0;    // begin of this round of a loop
  std::uint32_t shiftMs_ = 0;
  std::vector<Words> again_;  // values at the begin of a further round, last first
};

}  // namespace bench
