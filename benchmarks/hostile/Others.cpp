#include "Others.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <string>

#include "Victim.h"
#include "support/Eventually.h"
#include "support/RawPeer.h"
#include "system/Messages.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kTimeoutMs = 10000;

// The final report of one peer.
struct Result {
  unsigned int peer;  // kPeers means the newcomer
  long count, halfUs, mostUs, longestUs, failed;
};

class Stopwatch {
 public:
  long Us() const {
    return static_cast<long>(
        std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begin_).count());
  }

 private:
  Clock::time_point begin_ = Clock::now();
};

Result Summary(unsigned int peer, std::vector<long>& waitsUs, long failed) {
  std::sort(waitsUs.begin(), waitsUs.end());
  const std::size_t count = waitsUs.size();
  if (count == 0) return {peer, 0, 0, 0, 0, failed};
  return {peer,  static_cast<long>(count), waitsUs[count / 2], waitsUs[count * 99 / 100], waitsUs[count - 1],
          failed};
}

Result Ping(const RawPeer& peer, unsigned int number, Clock::time_point end) {
  std::vector<long> waitsUs;
  do {
    const std::string state = U32(static_cast<unsigned int>(waitsUs.size())) + U32(number) + U32(1);
    const Stopwatch watch;
    if (peer.Send(Packet(MetadataMgrMsg_CameraState, state)) != 0 ||
        peer.Send(Packet(MetadataMgrMsg_Ping)) != 0 ||
        peer.Receive(kTimeoutMs) != Packet(MetadataMgrMsg_PingResponse)) {
      return Summary(number, waitsUs, 1);
    }
    waitsUs.push_back(watch.Us());
    (void)poll(nullptr, 0, 1);
  } while (Clock::now() < end);
  return Summary(number, waitsUs, 0);
}

bool ComeAndLeave() {
  constexpr unsigned int kId = 20000;
  const std::string subscription = U32(0) + U32(kId);
  RawPeer peer;
  if (!Eventually([&peer] { return (peer = RawPeer::To(kProcess, "Newcomer")).Connected(); })) return false;
  return peer.Send(Packet(SubscribeMsg_Subscribe, subscription)) == 0 &&
         peer.Receive(kTimeoutMs) ==
             Packet(SubscribeMsg_Answer, subscription + U32(0) + std::string(1, '\0'));
}

Result Come(Clock::time_point end) {
  std::vector<long> waitsUs;
  long failed = 0;
  do {  // at least once, however late it starts
    const Stopwatch watch;
    if (ComeAndLeave()) {
      waitsUs.push_back(watch.Us());
    } else {
      ++failed;
    }
    constexpr int kPauseMs = 5;
    (void)poll(nullptr, 0, kPauseMs);
  } while (Clock::now() < end);
  return Summary(Others::kPeers, waitsUs, failed);
}

}  // namespace

Others::Others(double seconds) {
  Need(pipe(results_) == 0, "pipe");
  for (unsigned int i = 0; i < kPeers; ++i) {
    peers_.push_back(RawPeer::To(kProcess, "Good" + std::to_string(i)));
    Need(peers_.back().Send(Packet(MetadataMgrMsg_Ping)) == 0 &&
             peers_.back().Receive() == Packet(MetadataMgrMsg_PingResponse),
         "a first ping");
  }
  const auto end =
      Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
  for (unsigned int i = 0; i <= kPeers; ++i) {
    children_.push_back(std::make_unique<Child>([this, i, end] {
      const Result result = i < kPeers ? Ping(peers_[i], i, end) : Come(end);
      return write(results_[1], &result, sizeof result) == sizeof result ? 0 : 1;
    }));
  }
  close(results_[1]);
}

Waits Others::End() {
  Waits waits;
  waits.cameraStates.resize(kPeers);
  Result result{};
  while (read(results_[0], &result, sizeof result) == sizeof result) {
    waits.failed += result.failed;
    if (result.peer == kPeers) {
      waits.newcomers = result.count;
      waits.newcomerLongestUs = result.longestUs;
      continue;
    }
    waits.pings += result.count;
    waits.cameraStates[result.peer] = result.count;
    waits.halfUs = std::max(waits.halfUs, result.halfUs);
    waits.mostUs = std::max(waits.mostUs, result.mostUs);
    waits.longestUs = std::max(waits.longestUs, result.longestUs);
  }
  close(results_[0]);
  children_.clear();
  return waits;
}
