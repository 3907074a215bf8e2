// Replaces MetadataMgr in the tests of the bench: follows the start-up sequence, answers the requests of the
// bench, and misbehaves as the environment variable STUB says.
#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "Misc/ProcessInitializer.h"
#include "clients/SubscribeServer.h"
#include "items/BoolItem.h"

std::string gStateMgrName = "StateMgr";

namespace {

enum : unsigned int { kPing = 13488, kBookmark = 13509 };

bool Is(const char* behaviour) {
  const char* stub = std::getenv("STUB");
  return stub != nullptr && std::string(stub) == behaviour;
}

class BookmarkServer : public SubscribeServer {
 public:
  using SubscribeServer::SubscribeServer;
  void GetItem(unsigned int itemId, IpcMessage& reply, unsigned int messageType) override {
    const BoolItem none(false);
    if (itemId == 0 && reply.Allocate(messageType, none.Size(), nullptr) == 0) (void)none.EncodeMsg(reply);
  }
};

class Stub {
 public:
  bool PreInit(LinxIpc& ipc) {
    server_ = std::make_unique<BookmarkServer>(ipc);
    if (!Is("no pong")) ipc.RegisterHandler(kPing, Empty, nullptr);
    ipc.RegisterHandler(kBookmark, Bookmark, this);
    return !Is("failed start");
  }
  bool SubscribeToServers(LinxIpc& /*ipc*/, bool /*flag*/) { return !Is("refuses"); }
  void Shutdown(LinxIpc& /*ipc*/) { stop_ = true; }
  void ProcessDied(LinxIpc& /*ipc*/, e_Process /*process*/) {}
  void ProcessRestarted(LinxIpc& /*ipc*/, e_Process /*process*/) {}
  bool Stopped() const { return stop_; }

  static void Level(LinxIpc* ipc, void* /*context*/) { Reply(ipc, LogLevelMsg_Response, {"\0\0\0\7", 4}); }

 private:
  static void Reply(LinxIpc* ipc, unsigned int type, std::string payload) {
    const std::string asker = ipc->CurrentMessage().GetSender();
    (void)ipc->CurrentMessage().Allocate(type, static_cast<unsigned int>(payload.size()), payload.data());
    (void)ipc->Notify(asker, ipc->CurrentMessage(), true);
  }
  static void Empty(LinxIpc* ipc, void* /*context*/) { Reply(ipc, kPing + 1, {}); }
  static void Bookmark(LinxIpc* ipc, void* self) {
    if (ipc->CurrentMessage().Size() != 4) std::abort();
    if (Is("dies")) _exit(3);
    BoolItem taken(true);
    if (!Is("no notice")) static_cast<Stub*>(self)->server_->NotifySubscribers(0, taken);
  }

  std::unique_ptr<BookmarkServer> server_;
  bool stop_ = false;
};

void IgnoreShutdown(LinxIpc* /*ipc*/, void* /*context*/) {}

}  // namespace

int main() {
  if (Is("sleeps")) return pause();
  Stub stub;
  ProcessInitializer<Stub> initializer(stub, e_Process_MetadataMgr);
  if (!initializer.Init("StubMetadataMgr", LogClient::Instance().Level())) return 1;
  if (Is("mute")) initializer.Ipc().RegisterShutdown(IgnoreShutdown, nullptr);
  if (Is("stubborn")) initializer.Ipc().RegisterHandler(LogLevelMsg_Set, Stub::Level, nullptr);
  while (!stub.Stopped()) (void)initializer.Ipc().Receive(-1, 0, LinxIpc::emptyString, nullptr);
  return Is("exits with 4") ? 4 : 0;
}
