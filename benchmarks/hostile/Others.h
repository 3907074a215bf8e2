#pragma once

#include <memory>
#include <vector>

#include "support/Child.h"
#include "support/RawPeer.h"

// The latencies of the well-behaved peers, in microseconds.
struct Waits {
  long pings = 0;
  long halfUs = 0;
  long mostUs = 0;  // of 99 in a hundred
  long longestUs = 0;
  long newcomers = 0;
  long newcomerLongestUs = 0;
  long failed = 0;                 // pings and newcomers that got no answer, or a refusal
  std::vector<long> cameraStates;  // sent by each
};

// Peers with manners, each a process of its own: kPeers that tell a camera's state and ping, each
// millisecond or as soon as the answer is there, and one that comes anew each time, follows the bookmarks
// and leaves again.
class Others {
 public:
  static constexpr unsigned int kPeers = 3;

  // They are connected from now on, and go on so long.
  explicit Others(double seconds);
  // Waits for their end.
  Waits End();

 private:
  std::vector<RawPeer> peers_;
  std::vector<std::unique_ptr<Child>> children_;
  int results_[2] = {-1, -1};
};
