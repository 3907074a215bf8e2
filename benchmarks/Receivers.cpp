#include "Receivers.h"

#include <sys/epoll.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>

#include "Measure.h"
#include "MetadataMgr.h"
#include "ProcessState.h"
#include "Senders.h"
#include "support/EventKinds.h"
#include "system/Systick.h"

namespace {

unsigned int laterMs = 0;

class Meter {
 public:
  Meter() : begin_(Now()) {}
  Taken SoFar() const {
    const Taken now = Now();
    return {now.cpuSeconds - begin_.cpuSeconds, now.waits - begin_.waits};
  }

 private:
  static Taken Now() {
    rusage usage{};
    (void)getrusage(RUSAGE_SELF, &usage);
    return {ThreadSeconds(), static_cast<double>(usage.ru_nvcsw)};
  }
  Taken begin_;
};

Taken ReceiveBare(const std::string& path, int events, int ready) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  (void)path.copy(address.sun_path, sizeof address.sun_path - 1);
  const int listening = socket(AF_UNIX, SOCK_SEQPACKET, 0);
  if (bind(listening, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) Fail("bind");
  if (listen(listening, kSenders) != 0 || write(ready, "", 1) != 1) Fail("listen");
  std::array<unsigned char, 4100> buffer;
  std::array<epoll_event, kSenders> found{};
  const int epoll = epoll_create1(0);
  for (int i = 0; i < kSenders; ++i) {
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.fd = accept(listening, nullptr, nullptr);
    if (recv(event.data.fd, buffer.data(), buffer.size(), 0) <= 0) Fail("hello");
    if (epoll_ctl(epoll, EPOLL_CTL_ADD, event.data.fd, &event) != 0) Fail("epoll_ctl");
  }
  const Meter meter;
  for (int received = 0; received < events;) {
    const int count = epoll_wait(epoll, found.data(), kSenders, -1);
    for (int i = 0; i < count; ++i, ++received) {
      if (recv(found[static_cast<std::size_t>(i)].data.fd, buffer.data(), buffer.size(), 0) <= 0)
        Fail("recv");
    }
  }
  return meter.SoFar();
}

// One turn of the main loop; returns whether a message arrived.
bool Turn(MetadataMgr& manager, LinxIpc& ipc) {
  const bool came = ipc.Receive(1000, 0, LinxIpc::emptyString, nullptr) == 0;
  manager.PetWatchdog();
  manager.PeriodicProcessing();
  return came;
}

// `run` takes the manager and its endpoint.
template <typename Run>
Taken RunManager(const std::string& directory, int ready, Run run) {
  setenv("LINX_IPC_DIR", directory.c_str(), 1);
  setenv("METADATA_SHM", "/metadata-benchmark", 1);
  gMetadataDir = directory;
  gMetadataPath = directory + "/metadata";
  MetadataMgr manager;
  LinxIpc ipc("MetadataMgr");
  if (ipc.Init() != 0 || !manager.PreInit(ipc) || write(ready, "", 1) != 1) Fail("start");
  RegisterEventHandlers(ipc, &manager);
  const Meter meter;
  run(manager, ipc);
  const Taken taken = meter.SoFar();
  manager.Cleanup();
  shm_unlink("/metadata-benchmark");
  return taken;
}

Taken ReceiveOurs(const std::string& directory, int events, int ready) {
  return RunManager(directory, ready, [events](MetadataMgr& manager, LinxIpc& ipc) {
    int idle = 0;
    for (int received = 0; received < events;) {
      const bool came = Turn(manager, ipc);
      received += came ? 1 : 0;
      idle = came ? 0 : idle + 1;
      if (idle == 5) Fail("Events were lost: receive");
    }
    laterMs = 1000;  // makes the commit of the last reports due
    manager.PeriodicProcessing();
  });
}

Taken Idle(const std::string& directory, int seconds, int ready) {
  return RunManager(directory, ready, [seconds](MetadataMgr& manager, LinxIpc& ipc) {
    const unsigned int begin = Systick().SystemTick();
    while (Systick().SystemTick() - begin < static_cast<unsigned int>(seconds) * 1000U) Turn(manager, ipc);
  });
}

}  // namespace

// Replaces the platform's function, so that work due in a second can be done at once.
unsigned int Systick::SystemTick() const {
  timespec now{};
  if (clock_gettime(CLOCK_BOOTTIME, &now) != 0) return kUnavailable;
  return static_cast<unsigned int>(now.tv_sec * 1000 + now.tv_nsec / 1000000) + laterMs;
}

ReceiverProcess::ReceiverProcess(Kind kind, const std::string& directory, int events)
    : directory_(directory) {
  std::array<int, 2> result{};
  if (pipe(result.data()) != 0) Fail("pipe");
  result_ = result[0];
  pid_ = fork();
  if (pid_ == 0) {
    const Taken taken = kind == Kind::kBare   ? ReceiveBare(Endpoint(), events, result[1])
                        : kind == Kind::kOurs ? ReceiveOurs(directory, events, result[1])
                                              : Idle(directory, events, result[1]);
    if (write(result[1], &taken, sizeof taken) != sizeof taken) Fail("write");
    _exit(0);
  }
  close(result[1]);
  char ready = 0;
  if (read(result_, &ready, 1) != 1) Fail("receiver");
}

Taken ReceiverProcess::Wait() const {
  Taken taken;
  if (read(result_, &taken, sizeof taken) != sizeof taken) Fail("receiver");
  close(result_);
  (void)waitpid(pid_, nullptr, 0);
  return taken;
}
