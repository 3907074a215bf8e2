#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "RunClock.h"

namespace reader {

class JsonWriter;

// Records that there should be and that are not: those of which the recording says that they were lost,
// and the gaps in the sequence numbers.
class Losses {
 public:
  // `all`: it gets every record of a stretch of the run, so that a missing number is a missing record.
  Losses(const RunClock& clock, bool all) : clock_(clock), all_(all) {}

  // Of every record, in their order.
  void Add(const Row& row, std::int64_t ms);
  // "lost" and "missing", the numbers of records; "losses" ([table, count, from, to]); "holes" in the
  // sequence numbers ([count, from, to]).
  void Write(JsonWriter& json) const;

 private:
  static constexpr std::size_t kMost = 500;  // of each kind
  struct Stretch {
    std::int64_t count;
    std::int64_t fromMs;
    std::int64_t toMs;
  };

  static void WriteStretch(const Stretch& stretch, JsonWriter& json);

  RunClock clock_;
  bool all_;
  bool any_ = false;
  std::int64_t lastSeq_ = 0;
  std::int64_t lastMs_ = 0;
  double lost_ = 0;  // not to overflow, whatever is in a damaged file
  double missing_ = 0;
  std::vector<std::pair<std::string, Stretch>> losses_;
  std::vector<Stretch> holes_;
};

}  // namespace reader
