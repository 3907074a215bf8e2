#pragma once

#include <cstdint>
#include <vector>

#include "Row.h"

namespace reader {

class Connection;

// UTC of the records of one file, as docs/store.md defines it.
class FileClock {
 public:
  // Reads the file's clock records. Without clock records, rows have no UTC.
  void Read(Connection& connection);
  // Sets the UTC of a row whose ticks are filled in. Fast for rows in order.
  void Tell(Row& row);
  // UTC minus arrival tick at a record, in ms; kNoUtc if the file has no clock records.
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
