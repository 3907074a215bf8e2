#pragma once

#include "RunOptions.h"
#include "StateMgrNews.h"
#include "Vehicle.h"

namespace bench {

// Ends all processes: the state manager shuts them down, signals end those that are left.
class ShutDown {
 public:
  // All must outlive this.
  ShutDown(const RunOptions& options, Vehicle& vehicle, const StateMgrNews& news, Report& report)
      : options_(options), vehicle_(vehicle), news_(news), report_(report) {}

  void Run();

  // MetadataMgr's peak memory before it was shut down; 0 when it did not run.
  unsigned long PeakMemoryKb() const { return peakMemoryKb_; }

 private:
  void StopThroughStateMgr();
  void EndUnannounced();
  void EndLeftovers();

  const RunOptions& options_;
  Vehicle& vehicle_;
  const StateMgrNews& news_;
  Report& report_;
  unsigned long peakMemoryKb_ = 0;
};

}  // namespace bench
