#include "FakeServers.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>

#include "clients/SubscribeServer.h"
#include "log/LogClient.h"
#include "support/Eventually.h"
#include "support/Hex.h"
#include "support/LogText.h"
#include "system/BigEndian.h"
#include "system/Servers.h"

namespace {

constexpr int kLateMs = 300;

// The current values, in the format of docs/wire.md. A server without a number has one value for all its
// items. A server that is not listed has zeros.
const std::map<std::string, std::string>& Values() {
  static const std::map<std::string, std::string> values = {
      {"ConfigMgr 10", "0004" + ToHex("unit") + "0000"},
      {"ConfigMgr 7", "0006" + ToHex("device") + "0000"},
      {"ConfigMgr 11", "000a" + ToHex("department") + "0000"},
      {"ConfigMgr 12", "0007" + ToHex("officer") + "0000"},
      {"ConfigMgr 13", "001e" + Zeros(10)},
      {"Fpga", "00000000 00020000 00000000 00000065"},  // siren
      {"GpsHal", Zeros(36) + "00000001" + Zeros(21) + "00000066"},
      {"StateMgr", "00000067"},
      {"RadarHal", Zeros(10) + "00000068"},
      {"MicMgr", "0001 00000001 01 00 00000069"},
      {"VideoMgr 0", Zeros(36) + "0000006a"},
      {"VideoMgr 1", Zeros(32) + "0000006b"},
      {"AccelHal", "00 0000006c"},
      {"TempHal", Zeros(8) + "0000006d"},
      {"ExternalMgr", "00 00 0000 0000 0000"},
  };
  return values;
}

std::string ValueOf(const std::string& server, unsigned int item) {
  const auto ofAll = Values().find(server);
  const auto found = ofAll != Values().end() ? ofAll : Values().find(server + " " + std::to_string(item));
  return found != Values().end() ? found->second : Zeros(64);
}

class FakeServer : public SubscribeServer {
 public:
  FakeServer(LinxIpc& ipc, std::string name, const Behaviour& behaviour, int askedFd)
      : SubscribeServer(ipc), name_(std::move(name)), behaviour_(behaviour), askedFd_(askedFd) {}

  void GetItem(unsigned int itemId, IpcMessage& reply, unsigned int messageType) override {
    const std::string asked = name_ + " " + std::to_string(itemId);
    const std::string line = asked + "\n";
    if (write(askedFd_, line.data(), line.size()) < 0) _exit(1);
    const auto found = behaviour_.when.find(itemId);
    const When when = found == behaviour_.when.end() ? When::kAnswers : found->second;
    if (when == When::kRefuses) return;
    if (when == When::kDies) _exit(0);
    if (when == When::kIsMute) (void)poll(nullptr, 0, -1);
    if (when == When::kIsLate) (void)poll(nullptr, 0, kLateMs);
    std::string value = FromHex(ValueOf(name_, itemId));
    (void)reply.Allocate(messageType, static_cast<unsigned int>(value.size()), value.data());
  }

 private:
  std::string name_;
  Behaviour behaviour_;
  int askedFd_;
};

// ---- The state manager as the leader of a process

void Tell(LinxIpc& ipc, unsigned int type, std::string payload = {}) {
  IpcMessage message;
  const std::string process = ipc.CurrentMessage().GetSender();
  (void)message.Allocate(type, static_cast<unsigned int>(payload.size()), payload.data());
  (void)ipc.Notify(process, message, true);
}

constexpr unsigned int kStarted = 13232, kSubscribe = 13233, kSubscribed = 13234, kFullRun = 13235;

void Lead(LinxIpc& ipc) {
  const auto started = [](LinxIpc* me, void*) { Tell(*me, kSubscribe, "1"); };
  const auto subscribed = [](LinxIpc* me, void*) {
    if (me->CurrentMessage().Size() == 0 || me->CurrentMessage().DataPtr()[0] == 0) return;
    Tell(*me, kFullRun);
    Tell(*me, LinxIpc::kShutdownNotice);
  };
  ipc.RegisterHandler(kStarted, started, nullptr);
  ipc.RegisterHandler(kSubscribed, subscribed, nullptr);
}

void SendPatiently(LinxIpc& ipc, IpcMessage& message) {
  while (ipc.Notify("MetadataMgr", message, true) == EAGAIN) {
  }
}

// Forwards a wrapped message of the test, because only the server itself can send its messages.
void Forward(LinxIpc* ipc, void* /*context*/) {
  IpcMessage& wrapped = ipc->CurrentMessage();
  IpcMessage message;
  (void)message.Allocate(GetU32(wrapped.DataPtr()), static_cast<unsigned int>(wrapped.Size() - 4),
                         reinterpret_cast<char*>(wrapped.DataPtr() + 4));
  SendPatiently(*ipc, message);
}

// The process answers a ping after all that this server sent before.
void Settle(LinxIpc* ipc, void* /*context*/) {
  constexpr unsigned int kPing = 13488;
  const std::string sender = ipc->CurrentMessage().GetSender();
  IpcMessage message;
  (void)message.Allocate(kPing, 0, nullptr);
  SendPatiently(*ipc, message);
  (void)ipc->Receive(20000, kPing + 1, "MetadataMgr", &message);
  (void)message.Allocate(kSettled, 0, nullptr);
  (void)ipc->Notify(sender, message, true);
}

// The ends of the pipes in a server.
struct Ends {
  int asked;
  int reached;
};

int Serve(const std::string& name, const Behaviour& behaviour, Ends ends) {
  LogClient::Instance().Level(0);  // only the process under test logs
  LinxIpc ipc(name);
  if (ipc.Init() != 0 || write(ends.reached, "", 1) != 1) return 1;
  if (name == "StateMgr") Lead(ipc);
  const FakeServer server(ipc, name, behaviour, ends.asked);
  ipc.RegisterHandler(kForward, Forward, nullptr);
  ipc.RegisterHandler(kSettle, Settle, nullptr);
  for (;;) (void)ipc.Receive(-1, 0, LinxIpc::emptyString, nullptr);
}

// Serves until the first process dies, then serves with default behaviour. The kernel kills the first process
// when this one ends.
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
  for (const ServerRow& server : servers::kAll) {
    const auto found = behaviours.find(server.name);
    Start(server.name, found == behaviours.end() ? Behaviour() : found->second);
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
  return LogText(text);
}
