// MetadataMgr with a disk that stalls once: the first sync later than 8.2 seconds after the start, in the
// middle of the default drive, takes 2.5 seconds.
#include <poll.h>

#include <chrono>
#include <cstdio>

#include "faults/WatchedVfs.h"

namespace {

class StallingDisk : public FileWatch {
 public:
  Verdict Before(const FileEvent& event) override {
    constexpr std::chrono::milliseconds kAfter{8200};
    constexpr int kStallMs = 2500;
    if (event.op != FileOp::kSync || stalled_ || Clock::now() - begin_ < kAfter) return {};
    stalled_ = true;
    (void)poll(nullptr, 0, kStallMs);
    (void)std::fprintf(stderr, "The disk stood still\n");
    return {};
  }

 private:
  using Clock = std::chrono::steady_clock;
  const Clock::time_point begin_ = Clock::now();
  bool stalled_ = false;
};

StallingDisk disk;
const WatchedVfs vfs(disk);

}  // namespace
