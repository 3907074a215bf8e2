#pragma once

#include "RunOptions.h"
#include "StateMgrNews.h"
#include "Vehicle.h"

namespace bench {

// Ends all processes: the state manager shuts them down, then signals end the remaining ones.
class ShutDown {
 public:
  // All must outlive this.
  ShutDown(const RunOptions& options, Vehicle& vehicle, const StateMgrNews& news, Report& report)
      : options_(options), vehicle_(vehicle), news_(news), report_(report) {}

  void Run();

  // The peak memory of MetadataMgr before the shut-down; 0 when it did not run.
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
