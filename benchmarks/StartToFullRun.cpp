// The time from the start of the process to full run: exec, endpoint, store, handshake, first records. The
// benchmark plays the state manager and answers at once. It sends a ping after the full-run message; the
// answer ends the measurement.

#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "Measure.h"
#include "ipc/LinxIpc.h"
#include "system/Messages.h"

namespace {

constexpr int kTimeoutMs = 10000;
const std::string kProcess = "MetadataMgr";

void Send(LinxIpc& ipc, unsigned int type, unsigned int size) {
  IpcMessage message;
  (void)message.Allocate(type, size, nullptr);
  if (ipc.Notify(kProcess, message, true) != 0) Fail("send");
}

void Await(LinxIpc& ipc, unsigned int type) {
  IpcMessage message;
  if (ipc.Receive(kTimeoutMs, type, kProcess, &message) != 0) Fail("receive");
}

void StartToFullRun(benchmark::State& state) {
  std::string directory = "/dev/shm/metadatamgr-XXXXXX";
  if (mkdtemp(directory.data()) == nullptr) Fail("mkdtemp");
  setenv("LINX_IPC_DIR", directory.c_str(), 1);
  setenv("METADATA_ROOT", directory.c_str(), 1);
  setenv("METADATA_SHM", "/metadata-benchmark", 1);
  LinxIpc ipc("StateMgr");
  if (ipc.Init() != 0) Fail("endpoint");

  std::string program = METADATAMGR_PROGRAM;
  char* arguments[] = {program.data(), nullptr};
  while (state.KeepRunning()) {
    pid_t child = 0;
    if (posix_spawn(&child, program.c_str(), nullptr, nullptr, arguments, environ) != 0) Fail("start");
    Await(ipc, StateMgrProcessMsg_Started);
    Send(ipc, StateMgrProcessMsg_Subscribe, 1);
    Await(ipc, StateMgrProcessMsg_Subscribed);
    Send(ipc, StateMgrProcessMsg_FullRun, 0);
    Send(ipc, MetadataMgrMsg_Ping, 0);
    Await(ipc, MetadataMgrMsg_PingResponse);
    state.PauseTiming();
    Send(ipc, LinxIpc::kShutdownNotice, 0);
    Await(ipc, StateMgrProcessMsg_ShutdownResponse);
    (void)waitpid(child, nullptr, 0);
    state.ResumeTiming();
  }
  std::filesystem::remove_all(directory);
  (void)shm_unlink("/metadata-benchmark");
}

BENCHMARK(StartToFullRun)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
