// Peers, among them the state manager and the servers, send any messages to the real manager, on its real
// endpoint and store, after a real start. The manager restarts now and then, so that its recording stays
// short.

#include <sys/mman.h>
#include <unistd.h>

#include <deque>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Input.h"
#include "MetadataMgr.h"
#include "Misc/ProcessInitializer.h"
#include "ProcessState.h"
#include "support/IpcDir.h"
#include "support/RawPeer.h"
#include "system/BigEndian.h"
#include "system/Messages.h"
#include "system/Servers.h"

namespace {

// Messages that any process may send, and answers that the manager waits for.
constexpr unsigned int kMessages[] = {
    SubscribeMsg_Subscribe,
    SubscribeMsg_Answer,
    SubscribeMsg_Unsubscribe,
    LogLevelMsg_Set,
    LogLevelMsg_Get,
    StateMgrProcessMsg_Subscribe,
    StateMgrProcessMsg_FullRun,
    StateMgrProcessMsg_Restarted,
    StateMgrProcessMsg_Died,
    MetadataMgrMsg_Ping,
    MetadataMgrMsg_MetadataToFile,
    MetadataMgrMsg_GetLastSystemTick,
    MetadataMgrMsg_VideoStreamState,
    MetadataMgrMsg_CameraState,
    MetadataMgrMsg_MicState,
    MetadataMgrMsg_RecordStartStop,
    MetadataMgrMsg_Bookmark,
    StreamMgrMsg_GetRecordingResponse,
};

std::vector<unsigned int> Types() {
  std::vector<unsigned int> types(std::begin(kMessages), std::end(kMessages));
  for (const ServerRow& server : servers::kAll) {
    for (const ServedItem& item : server.items) types.push_back(item.notificationId);
  }
  return types;
}

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
    static const std::vector<unsigned int> types = Types();
    const std::size_t which = input.Below(types.size() + 1);
    const unsigned int type = which < types.size() ? types[which] : input.Word();
    std::string payload = input.Text();
    if (type == LinxIpc::kShutdownNotice) return;
    if (type == MetadataMgrMsg_MetadataToFile) KeepInDirectory(payload);
    (void)sender.Send(Packet(type, payload));
  }

  // Runs turns of the main loop until it is idle.
  void LoopUntilIdle() {
    LinxIpc& ipc = initializer_->Ipc();
    for (bool idle = false; !idle;) {
      idle = ipc.Receive(0, 0, LinxIpc::emptyString, nullptr) == ETIMEDOUT;
      manager_->PetWatchdog();
      manager_->PeriodicProcessing();
      for (const RawPeer& peer : peers_) {
        while (const auto answer = peer.Receive(0)) Require(!answer->empty());  // never closed by the manager
      }
    }
    if (copied_) std::filesystem::remove_all(copies_);
    copied_ = false;
  }

  // ---- For the initializer

  bool PreInit(LinxIpc& ipc) {
    if (!manager_->PreInit(ipc)) return false;
    for (std::size_t i = 0; i < std::size(servers::kAll); ++i) {
      listeners_.emplace_back(servers::kAll[i].name);  // the manager asks only a process that listens
      peers_[i] = RawPeer::To("MetadataMgr", servers::kAll[i].name);
    }
    peers_[std::size(servers::kAll)] = RawPeer::To("MetadataMgr", "Tool");
    IpcMessage none;
    constexpr int kHellosMs = 50;
    Require(ipc.Receive(kHellosMs, 1, LinxIpc::emptyString, &none) == ETIMEDOUT);  // takes the hellos
    return StateMgr().Send(Packet(StateMgrProcessMsg_Subscribe, "\x01")) == 0;
  }

  // All servers answer in advance. The zero bytes decode as any item.
  bool SubscribeToServers(LinxIpc& ipc, bool flag) {
    for (std::size_t i = 0; i < std::size(servers::kAll); ++i) {
      for (const ServedItem& item : servers::kAll[i].items) Accept(peers_[i], item);
    }
    const bool subscribed = manager_->SubscribeToServers(ipc, flag);
    Require(StateMgr().Send(Packet(StateMgrProcessMsg_FullRun)) == 0);
    return subscribed;
  }

  void Shutdown(LinxIpc& /*ipc*/) {}
  void ProcessDied(LinxIpc& ipc, e_Process process) { manager_->ProcessDied(ipc, process); }
  void ProcessRestarted(LinxIpc& ipc, e_Process process) { manager_->ProcessRestarted(ipc, process); }

 private:
  static void Accept(const RawPeer& server, const ServedItem& item) {
    const std::string answer = U32(item.id) + U32(item.notificationId) + U32(0) + std::string(300, '\0');
    Require(server.Send(Packet(SubscribeMsg_Answer, answer)) == 0);
  }
  const RawPeer& StateMgr() const {
    return peers_[&servers::Of(e_Process_StateMgr) - std::begin(servers::kAll)];
  }

  // Redirects a copy to a directory that is emptied.
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
  std::deque<RawListener> listeners_;
  RawPeer peers_[std::size(servers::kAll) + 1];
  std::unique_ptr<MetadataMgr> manager_;
  std::unique_ptr<ProcessInitializer<Vehicle>> initializer_;
};

std::optional<Vehicle> gVehicle;

void StartAnew() {
  const bool first = !gVehicle.has_value();
  gVehicle.reset();
  gVehicle.emplace();
  if (first) (void)std::atexit([] { gVehicle.reset(); });  // before static objects are destroyed
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
