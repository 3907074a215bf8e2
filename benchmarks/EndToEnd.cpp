// The cost of an event of ten senders from the socket to the file, compared with a bare receive and bare
// inserts of the same rows. Sends events as a flood, and paced so that each event wakes the process. Then
// measures the cost of the process while all senders are silent.
//
//   EndToEnd [KIND]     default: each kind of event, then all kinds in turn
//
// Measures the CPU time of the receiving process, with files in memory (/dev/shm). Checks each time that no
// event was lost.

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "BareInsert.h"
#include "Measure.h"
#include "Receivers.h"
#include "Senders.h"
#include "support/EventKinds.h"

namespace {

constexpr int kRounds = 3;
constexpr int kFlood = 40'000;
constexpr int kPaced = 10'000;
constexpr double kGapSeconds = 1.0 / 20'000;
constexpr int kIdleSeconds = 20;

using Packets = std::vector<std::string>;
using Kind = ReceiverProcess::Kind;

// Cost per event: microseconds of CPU, and waits.
struct Cost {
  double receive = 0;
  double insert = 0;
  double ours = 0;
  double waits = 0;
  double Ratio() const { return ours / (receive + insert); }
};

// Keeps the senders connected until the receiver has everything.
Taken Send(const ReceiverProcess& receiver, const Packets& packets, bool flood) {
  const Senders senders(receiver.Endpoint());
  if (flood) {
    senders.Flood(packets, kFlood);
  } else {
    senders.Pace(packets, kPaced, kGapSeconds);
  }
  return receiver.Wait();
}

std::string RecordingIn(const Scratch& scratch) {
  std::vector<std::string> found;
  for (const auto& entry : std::filesystem::directory_iterator(scratch.Path())) {
    if (entry.path().extension() == ".db") found.push_back(entry.path());
  }
  if (found.size() != 1) Fail("A recording in one file");
  return found.front();
}

Cost Round(const Packets& packets, bool flood) {
  const int events = flood ? kFlood : kPaced;
  Cost cost;
  {
    const Scratch scratch;
    const ReceiverProcess bare(Kind::kBare, scratch.Path(), events);
    cost.receive = Send(bare, packets, flood).cpuSeconds * 1e6 / events;
  }
  const Scratch scratch;
  const ReceiverProcess receiver(Kind::kOurs, scratch.Path(), events);
  const Taken ours = Send(receiver, packets, flood);
  const std::string recording = RecordingIn(scratch);
  const Recorded recorded = CountRecords(recording);
  if (recorded.changes < events || recorded.records != recorded.numbers) Fail("Records were lost: count");
  cost.insert = InsertBare(recording, scratch.Path("bare.db")) * 1e6 / events;
  cost.ours = ours.cpuSeconds * 1e6 / events;
  cost.waits = ours.waits / events;
  return cost;
}

// The round with the median ratio.
Cost Measure(const Packets& packets, bool flood) {
  std::vector<Cost> rounds;
  rounds.reserve(kRounds);
  for (int i = 0; i < kRounds; ++i) rounds.push_back(Round(packets, flood));
  std::sort(rounds.begin(), rounds.end(), [](const Cost& a, const Cost& b) { return a.Ratio() < b.Ratio(); });
  return rounds[kRounds / 2];
}

void PrintCosts(const char* name, const Packets& packets) {
  const Cost flood = Measure(packets, true);
  const Cost paced = Measure(packets, false);
  std::printf("%-18s", name);
  for (const Cost& cost : {flood, paced}) {
    std::printf(" %8.2f %7.2f %7.2f %6.2f", cost.receive, cost.insert, cost.ours, cost.Ratio());
  }
  std::printf(" %6.2f\n", paced.waits);
  (void)std::fflush(stdout);
}

void PrintIdle() {
  const Scratch scratch;
  const ReceiverProcess receiver(Kind::kIdle, scratch.Path(), kIdleSeconds);
  const Senders silent(receiver.Endpoint());
  const Taken taken = receiver.Wait();
  std::printf("Ten connected and silent: %.0f waits and %.2f ms of CPU a minute\n",
              taken.waits * 60 / kIdleSeconds, taken.cpuSeconds * 1000 * 60 / kIdleSeconds);
}

}  // namespace

int main(int argc, char** argv) {
  std::printf("%-18s %31s %31s\n%-18s %8s %7s %7s %6s %8s %7s %7s %6s %6s\n", "us of CPU an event", "flood",
              "paced", "", "receive", "insert", "ours", "ratio", "receive", "insert", "ours", "ratio",
              "waits");
  Packets all;
  all.reserve(EventKinds().size());
  for (const EventKind& kind : EventKinds()) {
    all.push_back(kind.Packet());
    if (argc < 2 || kind.name == std::string(argv[1])) PrintCosts(kind.name, {kind.Packet()});
  }
  if (argc >= 2) return 0;
  PrintCosts("all in turn", all);
  PrintIdle();
  return 0;
}
