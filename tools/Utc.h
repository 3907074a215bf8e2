#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Row.h"
#include "Sqlite.h"

// ISO 8601 with milliseconds, "2024-05-01T12:00:00.000Z"; "-" for kNoUtc.
std::string UtcText(std::int64_t utcMs);

// Appends the same; quick for times that follow one another.
class UtcWriter {
 public:
  void Append(std::int64_t utcMs, std::string& text);

 private:
  std::int64_t day_ = kNoUtc;
  char date_[16] = {};
};

// Reads "2024-05-01", "2024-05-01T12:00", "2024-05-01T12:00:30.25Z"; the Z may be left out, a blank may
// stand for the T. False when it is none.
bool ReadUtc(std::string_view text, std::int64_t& utcMs);

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
