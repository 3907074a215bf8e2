// The real manager on its real endpoint and store, after a real start, with all handlers in force: its
// peers, the state manager and the servers among them, send it any messages. It is started anew now and
// then, so that its recording stays short.

#include <sys/mman.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "Input.h"
#include "MetadataMgr.h"
#include "Misc/ProcessInitializer.h"
#include "ProcessState.h"
#include "SubscriptionTable.h"
#include "support/IpcDir.h"
#include "support/RawPeer.h"
#include "system/BigEndian.h"
#include "system/Messages.h"

namespace {

constexpr unsigned int kSubscribe = 1856;  // and 1857 the answer, 1858 the end

struct Server {
  const char* name;
  unsigned int firstItem, firstId, count;
};
constexpr Server kServers[] = {
    {"StateMgr", 1, 13505, 4}, {"GpsHal", 1, 13504, 1},  {"RadarHal", 1, 13510, 1},
    {"Fpga", 17, 13497, 1},    {"MicMgr", 0, 13511, 1},  {"VideoMgr", 0, 13513, 2},
    {"AccelHal", 1, 13512, 1}, {"TempHal", 0, 13515, 1}, {"ExternalMgr", 16, 18952, 6},
    {"ConfigMgr", 0, 0, 0},
};
constexpr unsigned int kConfigItems[] = {10, 7, 11, 12, 13};  // 13492 and on

constexpr unsigned int kTypes[] = {
    13488, 13490, 13498, 13500, 13501, 13502, 13503, 13509, 1872,  1873,  1856,  1857,  1858,
    13233, 13235, 13236, 13237, 13492, 13493, 13494, 13495, 13496, 13497, 13504, 13505, 13506,
    13507, 13508, 13510, 13511, 13512, 13513, 13514, 13515, 18952, 18957, 13617, 4711,
};

class Vehicle {
 public:
  Vehicle() {
    gMetadataDir = directory_.Beside("metadata");
    gMetadataPath = gMetadataDir + "/metadata";
    gStateMgrName = "StateMgr";
    gStoreInitialized = gShutdownRequested = false;
    setenv("METADATA_SHM", shared_.c_str(), 1);
    manager_ = std::make_unique<MetadataMgr>();
    initializer_ = std::make_unique<ProcessInitializer<Vehicle>>(*this, e_Process_MetadataMgr);
    Require(initializer_->Init("MetadataMgr", 255));
    LoopUntilIdle();
  }
  ~Vehicle() {
    manager_->Shutdown(initializer_->Ipc());
    initializer_.reset();
    manager_.reset();
    (void)shm_unlink(shared_.c_str());
  }
  Vehicle(const Vehicle&) = delete;
  Vehicle& operator=(const Vehicle&) = delete;

  void TakeMessage(Input& input) {
    const RawPeer& sender = peers_[input.Below(std::size(peers_))];
    const std::size_t which = input.Below(std::size(kTypes) + 1);
    const unsigned int type = which < std::size(kTypes) ? kTypes[which] : input.Word();
    std::string payload = input.Text();
    if (type == LinxIpc::kShutdownNotice) return;
    if (type == MetadataMgrMsg_MetadataToFile) KeepInDirectory(payload);
    (void)sender.Send(Packet(type, payload));
  }

  // What the process's main loop does, as long as there is something to do.
  void LoopUntilIdle() {
    LinxIpc& ipc = initializer_->Ipc();
    for (bool idle = false; !idle;) {
      idle = ipc.Receive(0, 0, LinxIpc::emptyString, nullptr) == ETIMEDOUT;
      manager_->PetWatchdog();
      manager_->PeriodicProcessing();
      for (const RawPeer& peer : peers_) {
        while (const auto answer = peer.Receive(0)) Require(!answer->empty());  // it is never cut off
      }
    }
    if (copied_) std::filesystem::remove_all(copies_);
    copied_ = false;
  }

  // ---- For the initializer

  bool PreInit(LinxIpc& ipc) {
    if (!manager_->PreInit(ipc)) return false;
    for (std::size_t i = 0; i < std::size(kServers); ++i)
      peers_[i] = RawPeer::To("MetadataMgr", kServers[i].name);
    peers_[std::size(kServers)] = RawPeer::To("MetadataMgr", "Tool");
    IpcMessage none;
    constexpr int kHellosMs = 50;
    Require(ipc.Receive(kHellosMs, 1, LinxIpc::emptyString, &none) == ETIMEDOUT);  // takes the hellos
    return peers_[0].Send(Packet(StateMgrProcessMsg_Subscribe, "\x01")) == 0;
  }

  // All servers answer beforehand. So many zeros are every item.
  bool SubscribeToServers(LinxIpc& ipc, bool flag) {
    for (std::size_t i = 0; i < std::size(kServers); ++i) {
      const Server& server = kServers[i];
      for (unsigned int n = 0; n < server.count; ++n)
        Accept(peers_[i], server.firstItem + n, server.firstId + n);
    }
    unsigned int id = subscriptions::kVehicleInfo.notificationId;
    for (const unsigned int item : kConfigItems) Accept(peers_[std::size(kServers) - 1], item, id++);
    const bool subscribed = manager_->SubscribeToServers(ipc, flag);
    Require(peers_[0].Send(Packet(StateMgrProcessMsg_FullRun)) == 0);
    return subscribed;
  }

  void Shutdown(LinxIpc& /*ipc*/) {}
  void ProcessDied(LinxIpc& ipc, e_Process process) { manager_->ProcessDied(ipc, process); }
  void ProcessRestarted(LinxIpc& ipc, e_Process process) { manager_->ProcessRestarted(ipc, process); }

 private:
  static void Accept(const RawPeer& server, unsigned int item, unsigned int id) {
    Require(server.Send(Packet(kSubscribe + 1, U32(item) + U32(id) + U32(0) + std::string(300, '\0'))) == 0);
  }

  // A request for a copy gets a path below a directory that is emptied.
  void KeepInDirectory(std::string& payload) {
    constexpr std::size_t kPathBytes = 1024;
    std::filesystem::create_directory(copies_);
    std::string path = payload.substr(0, kPathBytes);
    std::replace(path.begin(), path.end(), '/', '_');
    path = (copies_ + "/" + path).substr(0, path.size());
    payload.replace(0, path.size(), path);
    copied_ = true;
  }

  const IpcDir directory_;
  const std::string shared_ = "/mm-fuzz-" + std::to_string(getpid());
  const std::string copies_ = directory_.Beside("copies");
  bool copied_ = false;
  RawPeer peers_[std::size(kServers) + 1];
  std::unique_ptr<MetadataMgr> manager_;
  std::unique_ptr<ProcessInitializer<Vehicle>> initializer_;
};

std::optional<Vehicle> gVehicle;

void StartAnew() {
  const bool first = !gVehicle.has_value();
  gVehicle.reset();
  gVehicle.emplace();
  if (first) (void)std::atexit([] { gVehicle.reset(); });  // before what it uses is gone
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr unsigned int kInputsARun = 5000;
  static unsigned int inputs = 0;
  if (inputs++ % kInputsARun == 0) StartAnew();
  Input input(data, size);
  for (int messages = 0; !input.Done() && messages < 50; ++messages) {
    gVehicle->TakeMessage(input);
    if (input.Below(4) == 0) gVehicle->LoopUntilIdle();
  }
  gVehicle->LoopUntilIdle();
  return 0;
}
