// Copies a long recording while ten servers send and a peer pings. Measures the copy and the pings, and
// checks that every event is recorded.
//
// Usage: CopyLoad [ROWS [PER_SECOND]]. ROWS is the length of the recording, by default 12.5 million records
// or 256 MB; PER_SECOND the events of each server in a second, by default 300. The exit status is 1 when an
// event was lost.

#include <poll.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "TenServers.h"
#include "support/Connection.h"
#include "support/IpcDir.h"
#include "support/RawPeer.h"
#include "system/Messages.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

const std::string kProcess = "MetadataMgr";
constexpr int kTimeoutMs = 120'000;

double MsSince(Clock::time_point begin) {
  return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

// The rows that one event of a server makes.
struct Rows {
  const char* server;
  long each;
  const char* where;
  long atStart = 0;  // rows of the first value
};
constexpr Rows kRows[] = {
    {"ConfigMgr", 1, "vehicle WHERE event=1"},   {"Fpga", 1, "state WHERE event=1 AND signal=56"},
    {"GpsHal", 1, "gps WHERE event=1"},          {"StateMgr", 1, "state WHERE event=1 AND signal=70"},
    {"RadarHal", 1, "radar WHERE event=1"},      {"MicMgr", 4, "mic_present WHERE event=1"},
    {"VideoMgr", 4, "camera WHERE event=1"},     {"AccelHal", 1, "state WHERE event=1 AND signal=66", 1},
    {"TempHal", 4, "temperature WHERE event=1"}, {"ExternalMgr", 1, "live_stream WHERE event=1"},
};

// Pings every 5 ms until told to end. Prints the waiting times.
int Ping(int end) {
  const RawPeer peer = RawPeer::To(kProcess, "Pinger");
  std::vector<double> waitsMs;
  pollfd ended{end, POLLIN, 0};
  do {
    const auto begin = Clock::now();
    if (peer.Send(Packet(MetadataMgrMsg_Ping)) != 0 ||
        peer.Receive(kTimeoutMs) != Packet(MetadataMgrMsg_PingResponse))
      return 1;
    waitsMs.push_back(MsSince(begin));
  } while (poll(&ended, 1, 5) == 0);
  std::sort(waitsMs.begin(), waitsMs.end());
  const std::size_t count = waitsMs.size();
  std::printf("%zu pings, ms: median %.2f, 90 %% %.2f, 99 %% %.2f, second longest %.1f, longest %.0f\n",
              count, waitsMs[count / 2], waitsMs[count * 9 / 10], waitsMs[count * 99 / 100],
              waitsMs[count - 2], waitsMs.back());
  return std::fflush(stdout);
}

// Lengthens the recording at once.
void Fill(const std::string& recording, long rows) {
  const std::string said = Connection(recording).Rows(
      "PRAGMA busy_timeout=20000; WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<" +
      std::to_string(rows) +
      ") INSERT INTO temperature SELECT -i, 1, NULL, 0, 9, i%100 FROM n; PRAGMA wal_checkpoint");
  Need(said.starts_with("20000\n0|"), said.c_str());
}

void Copy(LinxIpc& ipc, std::string destination) {
  destination.resize(1024);
  IpcMessage answer;
  Send(ipc, kProcess, MetadataMgrMsg_MetadataToFile, destination + U32(0) + U32(0xFFFFFFFF));
  Need(ipc.Receive(kTimeoutMs, MetadataMgrMsg_MetadataToFileResponse, kProcess, &answer) == 0 &&
           answer.Size() == 1 && *answer.DataPtr() == 1,
       "the copy");
}

long Recorded(const std::string& directory, const std::string& where) {
  long count = 0;
  for (const auto& entry : fs::directory_iterator(directory))
    count += std::strtol(Connection(entry.path()).Rows("SELECT count(*) FROM " + where).c_str(), nullptr, 10);
  return count;
}

bool NothingLost(const std::string& directory, const std::vector<Published>& published) {
  bool good = true;
  for (std::size_t i = 0; i < published.size(); ++i) {
    const Published& sent = published[i];
    const long recorded = Recorded(directory, kRows[i].where);
    std::printf("%-12s %6ld events, %6ld rows, most waiting in its queue %6ld bytes\n", sent.server,
                sent.notices, recorded, sent.mostWaitingBytes);
    const bool whole = sent.lost == 0 && recorded == sent.notices * kRows[i].each + kRows[i].atStart;
    if (!whole) std::printf("FAILED: %ld lost by the server\n", sent.lost);
    good = good && whole;
  }
  return good && Recorded(directory, "loss") == 0;
}

}  // namespace

int main(int argc, char** argv) {
  const long rows = argc > 1 ? std::strtol(argv[1], nullptr, 10) : 12'500'000;
  const auto perSecond = static_cast<unsigned int>(argc > 2 ? std::strtol(argv[2], nullptr, 10) : 300);
  const IpcDir directory;
  const std::string shared = "/metadata-copyload-" + std::to_string(getpid());
  setenv("METADATA_ROOT", directory.Beside("").c_str(), 1);
  setenv("METADATA_SHM", shared.c_str(), 1);
  setenv("LOG_TARGET", "stderr", 1);
  unsetenv("RUN_WITHOUT_STATEMGR");
  const std::string recordings = directory.Beside("metadata");
  const TenServers servers;
  Child process(std::vector<std::string>{METADATAMGR_PROGRAM});
  servers.AwaitFullRun();
  LinxIpc ipc("Bench");
  Need(ipc.Init() == 0, "an endpoint");
  Fill(recordings + "/metadata.000001.db", rows);

  TenServers::Begin(ipc, perSecond);
  int end[2];
  Need(pipe(end) == 0, "pipe");
  Child pinger([&end] { return Ping(end[0]); });
  constexpr int kBesideMs = 2000;  // time before and after the copy
  (void)poll(nullptr, 0, kBesideMs);
  const auto begin = Clock::now();
  Copy(ipc, directory.Beside("copy.db"));
  const double copyMs = MsSince(begin);
  (void)poll(nullptr, 0, kBesideMs);
  const std::vector<Published> published = TenServers::End(ipc);
  Need(write(end[1], "", 1) == 1 && pinger.Wait() == 0, "the pings");
  std::printf("a copy of %.0f MB in %.2f s\n",
              static_cast<double>(fs::file_size(directory.Beside("copy.db"))) / (1 << 20), copyMs / 1000);
  Send(ipc, kProcess, LinxIpc::kShutdownNotice);
  Need(process.Wait(std::chrono::seconds(60)) == 0, "the end of the process");
  (void)shm_unlink(shared.c_str());
  return NothingLost(recordings, published) ? 0 : 1;
}
