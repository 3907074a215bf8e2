#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "RunClock.h"

namespace reader {

class JsonWriter;

// Missing records of a run: recorded losses, and holes in the sequence numbers.
class Losses {
 public:
  // `all`: Add gets the records of all sources, so a missing number is a missing record.
  Losses(const RunClock& clock, bool all) : clock_(clock), all_(all) {}

  // Call for every shown record, in order.
  void Add(const Row& row, std::int64_t ms);
  // Writes "lost" and "missing" (numbers of records), "losses" ([table, count, from, to]) and "holes"
  // ([count, from, to]).
  void Write(JsonWriter& json) const;

 private:
  static constexpr std::size_t kMost = 500;  // of losses and of holes
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
  double lost_ = 0;  // double: damaged files cannot make it overflow
  double missing_ = 0;
  std::vector<std::pair<std::string, Stretch>> losses_;
  std::vector<Stretch> holes_;
};

}  // namespace reader
