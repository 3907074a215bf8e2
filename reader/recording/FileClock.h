#pragma once

#include <cstdint>
#include <vector>

#include "Row.h"

namespace reader {

class Connection;

// UTC of the records of one file, as docs/store.md defines it.
class FileClock {
 public:
  // Reads the file's clock records; without them there is no UTC.
  void Read(Connection& connection);
  // Sets the UTC of a row whose other times are known. Quick for rows in their order.
  void Tell(Row& row);
  // Milliseconds to add to the arrival tick of a record to have UTC; kNoUtc where there is none.
  std::int64_t OffsetAt(std::int64_t seq);

 private:
  struct Anchor {
    std::int64_t seq;
    std::int64_t offsetMs;
  };
  std::vector<Anchor> anchors_;
  std::int64_t firstTrusted_ = 0;
  std::size_t at_ = 0;
};

}  // namespace reader
