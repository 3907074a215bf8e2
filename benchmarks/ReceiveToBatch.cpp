// The cost of a message of each kind from the socket to the store's batch, compared with receiving the same
// bytes from a socket of the same kind and dropping them.
//
// Measures only the CPU time of the receiving side: sends a burst of messages first. Reads the clock as
// usual, but keeps the tick constant during a burst, so that commits happen only between bursts.

#include <benchmark/benchmark.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <string>

#include "Measure.h"
#include "MetadataMgr.h"
#include "ProcessState.h"
#include "Ratio.h"
#include "Senders.h"
#include "support/EventKinds.h"
#include "system/Systick.h"

namespace {

constexpr int kBurst = 150;
unsigned int heldTick = 1000;

void SendBurst(int fd, const std::string& packet) {
  for (int i = 0; i < kBurst; ++i) SendPacket(fd, packet);
}

// Calls `receiveOne` for each message of a burst.
template <typename ReceiveOne>
void TimeBurst(benchmark::State& state, int from, const std::string& packet, ReceiveOne receiveOne) {
  SendBurst(from, packet);
  const double begin = ThreadSeconds();
  for (int i = 0; i < kBurst; ++i) receiveOne();
  state.SetIterationTime((ThreadSeconds() - begin) / kBurst);
}

void Ours(benchmark::State& state, const EventKind& kind) {
  const Scratch scratch;
  setenv("LINX_IPC_DIR", scratch.Path().c_str(), 1);
  setenv("METADATA_SHM", "/metadata-benchmark", 1);
  gMetadataDir = scratch.Path();
  gMetadataPath = scratch.Path("metadata");
  MetadataMgr manager;
  LinxIpc ipc("MetadataMgr");
  if (ipc.Init() != 0 || !manager.PreInit(ipc)) Fail("start");
  RegisterEventHandlers(ipc, &manager);
  const int fd = ConnectTo(scratch.Path("MetadataMgr"));
  SendPacket(fd, std::string("LINX\x01Sender"));
  const std::string packet = kind.Packet();
  while (state.KeepRunning()) {
    TimeBurst(state, fd, packet, [&] {
      (void)ipc.Receive(1000, 0, LinxIpc::emptyString, nullptr);
      manager.PetWatchdog();
      manager.PeriodicProcessing();
    });
    heldTick += 1000;
    manager.PeriodicProcessing();
  }
  close(fd);
  manager.Cleanup();
  shm_unlink("/metadata-benchmark");
}

void Floor(benchmark::State& state, const EventKind& kind) {
  std::array<int, 2> pair{};
  if (socketpair(AF_UNIX, SOCK_SEQPACKET, 0, pair.data()) != 0) Fail("socketpair");
  std::array<unsigned char, 4100> buffer;
  const std::string packet = kind.Packet();
  while (state.KeepRunning()) {
    TimeBurst(state, pair[0], packet, [&] {
      if (recv(pair[1], buffer.data(), buffer.size(), 0) <= 0) Fail("recv");
      benchmark::DoNotOptimize(buffer);
    });
  }
  close(pair[0]);
  close(pair[1]);
}

void Register(const std::string& name, void (*function)(benchmark::State&, const EventKind&),
              const EventKind& kind) {
  benchmark::RegisterBenchmark(name.c_str(), function, kind)
      ->UseManualTime()
      ->Iterations(500)
      ->Repetitions(5)
      ->ReportAggregatesOnly()
      ->Unit(benchmark::kNanosecond);
}

}  // namespace

// Replaces the platform's function.
unsigned int Systick::SystemTick() const {
  timespec now{};
  if (clock_gettime(CLOCK_BOOTTIME, &now) != 0) return kUnavailable;
  benchmark::DoNotOptimize(now);
  return heldTick;
}

int main(int argc, char** argv) {
  for (const EventKind& kind : EventKinds()) {
    Register(kind.name + std::string("/floor"), Floor, kind);
    Register(kind.name + std::string("/ours"), Ours, kind);
  }
  return RunWithRatios(argc, argv);
}
