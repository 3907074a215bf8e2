#pragma once

#include "Messages.h"
#include "RowFormat.h"
#include "TrackFollower.h"
#include "Utc.h"

namespace reader {

// GPX 1.1. All waypoints must precede all tracks, so two formats write the file one after the other.

constexpr const char* kGpxSources = "gps,bookmark";

// Writes the start of the file, and each bookmark as a waypoint.
class GpxWaypoints : public RowFormat {
 public:
  explicit GpxWaypoints(Messages& messages) : messages_(messages) {}
  void Begin(std::string& out) override;
  void Append(const Row& row, std::string& out) override;
  void Skip(const Row& row) override { (void)track_.Take(row); }

 private:
  Messages& messages_;
  TrackFollower track_;
};

// Writes each run as a track with a segment for each part with a fix, and the end of the file.
class GpxTracks : public RowFormat {
 public:
  void Append(const Row& row, std::string& out) override;
  void Skip(const Row& row) override;
  void End(std::string& out) override;

 private:
  void BeginSegment(int run, std::string& out);

  TrackFollower track_;
  UtcWriter utc_;
  int run_ = 0;
};

}  // namespace reader
