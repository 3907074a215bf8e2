// Runs one hostile peer at a time, each against a new MetadataMgr, beside well-behaved peers. Measures how
// long these wait, and the memory and descriptors of the process.
//
// Usage: HostilePeers [SECONDS]. SECONDS is the time for each hostile peer, by default five. The exit status
// is 1 when a well-behaved peer was not served or lost an event, or when the process exceeded a limit. Prints
// the waiting times without checking them.

#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "Hostiles.h"
#include "Others.h"
#include "Victim.h"

namespace {

constexpr long kMaxResidentKb = 24L * 1024;
constexpr int kMaxDescriptors = 160;  // 128 connections and the process's own
constexpr long kMaxLogBytes = 1L << 20;

void MayOpenMany() {
  rlimit limit{};
  (void)getrlimit(RLIMIT_NOFILE, &limit);
  limit.rlim_cur = limit.rlim_max;
  (void)setrlimit(RLIMIT_NOFILE, &limit);
}

std::unique_ptr<Child> Begin(const Hostile& hostile, double seconds) {
  using Clock = std::chrono::steady_clock;
  return std::make_unique<Child>([&hostile, seconds] {
    MayOpenMany();
    const auto end = Clock::now() + std::chrono::duration<double>(seconds);
    while (Clock::now() < end) hostile.behave();
    return 0;
  });
}

bool Bounded(const Victim& victim, const Waits& waits, const Taken& taken) {
  bool good = true;
  const auto expect = [&good](bool holds, const char* what, long found) {
    if (!holds) std::printf("  FAILED: %s: %ld\n", what, found);
    good = good && holds;
  };
  expect(waits.failed == 0, "not served", waits.failed);
  expect(waits.newcomers > 0, "newcomers", waits.newcomers);
  expect(taken.residentPeakKb <= kMaxResidentKb, "kB resident", taken.residentPeakKb);
  expect(taken.descriptors <= kMaxDescriptors, "descriptors", taken.descriptors);
  expect(victim.LogBytes() <= kMaxLogBytes, "bytes logged", victim.LogBytes());
  for (unsigned int i = 0; i < Others::kPeers; ++i) {
    const long recorded = victim.CameraRecords(i);
    expect(recorded == waits.cameraStates[i], "recorded, of another number sent", recorded);
  }
  return good;
}

bool Try(const Hostile& hostile, double seconds) {
  Victim victim;
  Others others(seconds);
  const auto peer = Begin(hostile, seconds);
  const Waits waits = others.End();
  const Taken taken = victim.Usage();
  (void)peer->Wait();
  Need(victim.Quit(), "the end of the process");
  std::printf("%-42s %7ld %8.2f %8.2f %8.2f %9.2f %8ld %5d %7ld\n", hostile.what, waits.pings,
              static_cast<double>(waits.halfUs) / 1000, static_cast<double>(waits.mostUs) / 1000,
              static_cast<double>(waits.longestUs) / 1000,
              static_cast<double>(waits.newcomerLongestUs) / 1000, taken.residentPeakKb, taken.descriptors,
              victim.LogBytes());
  const bool good = Bounded(victim, waits, taken);
  (void)std::fflush(stdout);
  return good;
}

}  // namespace

int main(int argc, char** argv) {
  constexpr double kSeconds = 5;
  const double seconds = argc > 1 ? std::strtod(argv[1], nullptr) : kSeconds;
  std::printf("%-42s %7s %8s %8s %8s %9s %8s %5s %7s\n", "One peer", "pings", "half ms", "99% ms", "longest",
              "newcomer", "peak kB", "fds", "log B");
  bool good = true;
  for (const Hostile& hostile : Hostiles()) good = Try(hostile, seconds) && good;
  return good ? 0 : 1;
}
