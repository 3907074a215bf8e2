#include "FakeServers.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <functional>
#include <sstream>

#include "StreamingLvsStateItem.h"
#include "clients/ServerClients.h"
#include "clients/StateMgrClient.h"
#include "clients/SubscribeServer.h"
#include "items/ConfigurationItems.h"
#include "items/CrashItem.h"
#include "items/FpgaExternalEventItem.h"
#include "items/GpsStatusItem.h"
#include "items/MicStatusResponse.h"
#include "items/RadarItem.h"
#include "items/SystickItem.h"
#include "items/TempStatus.h"
#include "items/VideoMgrCameraItem.h"
#include "items/VideoMgrStreamQualityItem.h"
#include "log/LogClient.h"
#include "support/Eventually.h"

namespace {

constexpr int kLateMs = 300;

template <typename T>
T Made(const std::function<void(T&)>& fill) {
  T item;
  fill(item);
  return item;
}

void EncodeInto(const Item& item, IpcMessage& reply, unsigned int type) {
  if (reply.Allocate(type, item.Size(), nullptr) == 0) (void)item.EncodeMsg(reply);
}

// The current value of each item.
bool Encode(const std::string& server, unsigned int id, IpcMessage& reply, unsigned int type) {
  const auto give = [&](const Item& item) { EncodeInto(item, reply, type); };
  if (server == "ConfigMgr") {
    if (id == 10) give(Made<VehicleInfo>([](auto& v) { v.unitId = "unit"; }));
    if (id == 7) give(Made<SystemInfo>([](auto& v) { v.deviceName = "device"; }));
    if (id == 11) give(Made<DepartmentInfo>([](auto& v) { v.name = "department"; }));
    if (id == 12) give(Made<Officer>([](auto& v) { v.name = "officer"; }));
    if (id == 13) give(Made<VideoRecordingSettings>([](auto& v) { v.preEventSeconds = 30; }));
  } else if (server == "Fpga") {
    give(Made<FpgaExternalEventItem>([](auto& v) {
      v.inputLevels = FpgaExternalEventItem::kSiren;
      v.tick = 101;
    }));
  } else if (server == "GpsHal") {
    give(Made<GpsStatusItem>([](auto& v) {
      v.quality = 1;
      v.tick = 102;
    }));
  } else if (server == "StateMgr") {
    give(SystickItem(103));
  } else if (server == "RadarHal") {
    give(Made<RadarItem>([](auto& v) { v.tick = 104; }));
  } else if (server == "MicMgr") {
    give(Made<MicStatusResponse>([](auto& v) {
      v.Add({e_MicrophonePosition{1}, true, false});
      v.tick = 105;
    }));
  } else if (server == "VideoMgr") {
    if (id == 0) give(Made<VideoMgrCameraItem>([](auto& v) { v.tick = 106; }));
    if (id == 1) give(Made<VideoMgrStreamQualityItem>([](auto& v) { v.tick = 107; }));
  } else if (server == "AccelHal") {
    give(Made<CrashItem>([](auto& v) { v.tick = 108; }));
  } else if (server == "TempHal") {
    give(Made<TempStatus>([](auto& v) { v.tick = 109; }));
  } else if (server == "ExternalMgr") {
    give(ExternalMgrApi::StreamingLvsStateItem());
  }
  return reply.DataPtr() != nullptr;
}

class FakeServer : public SubscribeServer {
 public:
  FakeServer(LinxIpc& ipc, std::string name, const Behaviour& behaviour, int askedFd)
      : SubscribeServer(ipc), name_(std::move(name)), behaviour_(behaviour), askedFd_(askedFd) {}

  void GetItem(unsigned int itemId, IpcMessage& reply, unsigned int messageType) override {
    const std::string line = name_ + " " + std::to_string(itemId) + "\n";
    if (write(askedFd_, line.data(), line.size()) < 0) _exit(1);
    const auto found = behaviour_.when.find(itemId);
    const When when = found == behaviour_.when.end() ? When::kAnswers : found->second;
    if (when == When::kRefuses) return;
    if (when == When::kDies) _exit(0);
    if (when == When::kIsMute) (void)poll(nullptr, 0, -1);
    if (when == When::kIsLate) (void)poll(nullptr, 0, kLateMs);
    (void)Encode(name_, itemId, reply, messageType);
    flooding_ = flooding_ || static_cast<int>(itemId) == behaviour_.floods;
  }

  bool Flooding() const { return flooding_; }
  void Flood() {
    const auto id = static_cast<unsigned int>(behaviour_.floods);
    VideoMgrCameraItem item;
    item.tick = ++floods_;
    NotifySubscribers(id, item);
  }

 private:
  std::string name_;
  Behaviour behaviour_;
  int askedFd_;
  bool flooding_ = false;
  unsigned int floods_ = 0;
};

// ---- The state manager as the leader of a process

void Tell(LinxIpc& ipc, unsigned int type, std::string payload = {}) {
  IpcMessage message;
  const std::string process = ipc.CurrentMessage().GetSender();
  (void)message.Allocate(type, static_cast<unsigned int>(payload.size()), payload.data());
  (void)ipc.Notify(process, message, true);
}

void Lead(LinxIpc& ipc) {
  constexpr unsigned int kStarted = 13232, kSubscribe = 13233, kSubscribed = 13234, kFullRun = 13235;
  const auto started = [](LinxIpc* me, void*) { Tell(*me, kSubscribe, "1"); };
  const auto subscribed = [](LinxIpc* me, void*) {
    if (me->CurrentMessage().Size() == 0 || me->CurrentMessage().DataPtr()[0] == 0) return;
    Tell(*me, kFullRun);
    Tell(*me, LinxIpc::kShutdownNotice);
  };
  ipc.RegisterHandler(kStarted, started, nullptr);
  ipc.RegisterHandler(kSubscribed, subscribed, nullptr);
}

// The pipes' ends of a server.
struct Ends {
  int asked;
  int reached;
};

int Serve(const std::string& name, const Behaviour& behaviour, Ends ends) {
  LogClient::Instance().Level(0);  // what is logged is the process's under test
  LinxIpc ipc(name);
  if (ipc.Init() != 0 || write(ends.reached, "", 1) != 1) return 1;
  if (name == "StateMgr") Lead(ipc);
  FakeServer server(ipc, name, behaviour, ends.asked);
  for (;;) {
    (void)ipc.Receive(server.Flooding() ? 0 : -1, 0, LinxIpc::emptyString, nullptr);
    if (server.Flooding()) server.Flood();
  }
}

// None of its lives outlasts the process that waits for its death.
int ServeTwice(const std::string& name, const Behaviour& behaviour, Ends ends) {
  const pid_t first = fork();
  if (first == 0) {
    (void)prctl(PR_SET_PDEATHSIG, SIGKILL);
    _exit(Serve(name, behaviour, ends));
  }
  (void)waitpid(first, nullptr, 0);
  return Serve(name, {}, ends);
}

}  // namespace

FakeServers::FakeServers(const std::map<std::string, Behaviour>& behaviours) {
  if (pipe2(asked_, O_NONBLOCK | O_CLOEXEC) != 0 || pipe2(reached_, O_NONBLOCK | O_CLOEXEC) != 0)
    std::abort();
  for (const char* name : {"ConfigMgr", "Fpga", "GpsHal", "StateMgr", "RadarHal", "MicMgr", "VideoMgr",
                           "AccelHal", "TempHal", "ExternalMgr"}) {
    const auto found = behaviours.find(name);
    Start(name, found == behaviours.end() ? Behaviour() : found->second);
  }
}

FakeServers::~FakeServers() {
  children_.clear();
  for (const int fd : {asked_[0], asked_[1], reached_[0], reached_[1]}) close(fd);
}

void FakeServers::Start(const std::string& name, const Behaviour& behaviour) {
  if (behaviour.absent) return;
  const Ends ends{asked_[1], reached_[1]};
  children_.try_emplace(name, [=] {
    return behaviour.returns ? ServeTwice(name, behaviour, ends) : Serve(name, behaviour, ends);
  });
  char byte = 0;
  if (!Eventually([&] { return read(reached_[0], &byte, 1) == 1; })) std::abort();
}

std::vector<std::string> FakeServers::Asked() {
  std::string text;
  std::array<char, 4096> part;
  ssize_t size = 0;
  while ((size = read(asked_[0], part.data(), part.size())) > 0)
    text.append(part.data(), static_cast<std::size_t>(size));
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}
