#pragma once

#include <cstdint>
#include <vector>

#include "RowKinds.h"
#include "Words.h"

namespace bench {

// Turns the rows of a recording, in order, into the items and messages that make the same rows again.
class ItemsOfRows {
 public:
  ItemsOfRows();

  // Takes a row into the values of its source. Returns the source if the row completes an event, else null.
  const Source* Take(const Row& row);

  // The verb "payload" with the last event of a source. Its tick is moved; 0 and 4294967295 stay.
  Words Event(const Source& source, std::uint32_t shiftMs);
  // The same for each item that MetadataMgr asks for at its start, with the values that were taken.
  std::vector<Words> FirstValues(std::uint32_t shiftMs);
  // Whether a video recording is running.
  bool Recording() const { return values_.recording; }

  static std::uint32_t Moved(std::uint32_t tick, std::uint32_t shiftMs);

 private:
  ItemValues values_;
};

}  // namespace bench
