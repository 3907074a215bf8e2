// What it costs to take a record start/stop message from the socket to the store's batch, beside
// the cost of receiving the same bytes and dropping them.
//
// CPU time of the receiving side alone: messages are sent beforehand, as many as the socket takes.
// The store writes to memory (/dev/shm), so that its commits cost what they cost the processor.

#include <benchmark/benchmark.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <string>

#include "MessageIds.h"
#include "MetadataMgr.h"
#include "Misc/StateMgrNotices.h"
#include "ProcessState.h"
#include "Ratio.h"
#include "system/BigEndian.h"

namespace {

constexpr int kBurst = 200;
using Packet = std::array<unsigned char, 9>;  // type, tick, start

double ThreadSeconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

[[noreturn]] void Fail(const char* what) {
  std::perror(what);
  std::exit(1);
}

void SendPacket(int fd, const void* data, std::size_t size) {
  if (send(fd, data, size, 0) != static_cast<ssize_t>(size)) Fail("send");
}

Packet RecordPacket(int n) {
  Packet packet{};
  PutU32(packet.data(), MetadataMgrMsg_RecordStartStop);
  PutU32(packet.data() + 4, static_cast<unsigned int>(n));
  packet[8] = n % 2 == 0 ? 1 : 0;
  return packet;
}

void SendBurst(int fd) {
  for (int i = 0; i < kBurst; ++i) {
    const Packet packet = RecordPacket(i);
    SendPacket(fd, packet.data(), packet.size());
  }
}

// A directory in memory that holds the endpoint and the recording, and the environment to match.
class Scratch {
 public:
  Scratch() {
    if (mkdtemp(path_.data()) == nullptr) Fail("mkdtemp");
    setenv("LINX_IPC_DIR", path_.c_str(), 1);
    setenv("METADATA_SHM", "/metadata-benchmark", 1);
    gMetadataDir = path_;
    gMetadataPath = path_ + "/metadata";
  }
  ~Scratch() { std::filesystem::remove_all(path_); }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  int Connect(const std::string& endpoint) const {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    (void)std::snprintf(address.sun_path, sizeof address.sun_path, "%s/%s", path_.c_str(), endpoint.c_str());
    const int fd = socket(AF_UNIX, SOCK_SEQPACKET, 0);
    if (connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) Fail("connect");
    return fd;
  }

 private:
  std::string path_ = "/dev/shm/metadatamgr-XXXXXX";
};

void Ours(benchmark::State& state) {
  const Scratch scratch;
  MetadataMgr manager;
  LinxIpc ipc("MetadataMgr");
  if (ipc.Init() != 0 || !manager.PreInit(ipc)) Fail("start");
  const int fd = scratch.Connect("MetadataMgr");
  const char hello[] =
      "LINX\x01"
      "Sender";
  SendPacket(fd, hello, sizeof hello - 1);
  while (state.KeepRunning()) {
    SendBurst(fd);
    const double begin = ThreadSeconds();
    for (int i = 0; i < kBurst; ++i) {
      (void)ipc.Receive(1000, 0, LinxIpc::emptyString, nullptr);
      manager.PetWatchdog();
      manager.PeriodicProcessing();
    }
    state.SetIterationTime(ThreadSeconds() - begin);
  }
  state.SetItemsProcessed(state.iterations() * kBurst);
  close(fd);
  manager.Cleanup();
}

void Floor(benchmark::State& state) {
  std::array<int, 2> pair{};
  if (socketpair(AF_UNIX, SOCK_SEQPACKET, 0, pair.data()) != 0) Fail("socketpair");
  std::array<unsigned char, 4096> buffer;
  while (state.KeepRunning()) {
    SendBurst(pair[0]);
    const double begin = ThreadSeconds();
    for (int i = 0; i < kBurst; ++i) {
      if (recv(pair[1], buffer.data(), buffer.size(), 0) <= 0) Fail("recv");
      benchmark::DoNotOptimize(buffer);
    }
    state.SetIterationTime(ThreadSeconds() - begin);
  }
  state.SetItemsProcessed(state.iterations() * kBurst);
  close(pair[0]);
  close(pair[1]);
}

BENCHMARK(Floor)->Name("ReceiveToBatch/floor")->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(Ours)->Name("ReceiveToBatch/ours")->UseManualTime()->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
  return RunWithRatios(argc, argv);
}
