#pragma once

#include "RowFormat.h"
#include "TrackFollower.h"
#include "Utc.h"

namespace reader {

constexpr const char* kGeoJsonSources = "gps,bookmark";

// GeoJSON (RFC 7946): a line for each part of a run with a fix, a point for each bookmark.
class GeoJson : public RowFormat {
 public:
  void Begin(std::string& out) override;
  void Append(const Row& row, std::string& out) override;
  void Skip(const Row& row) override;
  void End(std::string& out) override;

 private:
  // Longer lines are split, which limits memory.
  static constexpr int kMostPositions = 10'000;

  void BeginFeature(const std::string& geometry, std::string& out);
  void AppendBookmark(const Row& row, std::string& out);
  void AddPosition(const GpsFix& fix);
  void AddValue(bool known, std::int64_t tenths, std::string& list) const;
  void FinishLine(std::string& out);

  TrackFollower track_;
  UtcWriter utc_;
  bool any_ = false;
  int run_ = 0;
  // The current line: its positions, and JSON lists without brackets.
  int positions_ = 0;
  GpsFix last_;
  std::string coordinates_;
  std::string times_;
  std::string speeds_;
  std::string courses_;
  std::string altitudes_;
};

}  // namespace reader
