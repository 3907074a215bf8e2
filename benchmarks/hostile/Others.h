#pragma once

#include <memory>
#include <vector>

#include "support/Child.h"
#include "support/RawPeer.h"

// The latencies of the well-behaved peers, in microseconds.
struct Waits {
  long pings = 0;
  long halfUs = 0;
  long mostUs = 0;  // 99th percentile
  long longestUs = 0;
  long newcomers = 0;
  long newcomerLongestUs = 0;
  long failed = 0;                 // pings and newcomers without an answer, or refused
  std::vector<long> cameraStates;  // camera states sent by each peer
};

// Well-behaved peers, each in its own process. kPeers of them send a camera state and a ping, then wait for
// the answer and one millisecond. One newcomer repeatedly connects, subscribes to bookmarks and disconnects.
class Others {
 public:
  static constexpr unsigned int kPeers = 3;

  // Connects the peers and runs them for `seconds`.
  explicit Others(double seconds);
  // Waits until the peers have ended.
  Waits End();

 private:
  std::vector<RawPeer> peers_;
  std::vector<std::unique_ptr<Child>> children_;
  int results_[2] = {-1, -1};
};
