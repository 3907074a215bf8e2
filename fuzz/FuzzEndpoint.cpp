// Hostile peers send raw bytes, hellos and messages to an endpoint and close, in any order, while the
// endpoint receives in both ways, sends and queues. As root some peers are observers: only their questions
// may get through. Afterwards the endpoint must serve a well-behaved peer.

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <string>

#include "Input.h"
#include "ipc/LinxIpc.h"
#include "ipc/PeerQueue.h"
#include "log/LogClient.h"
#include "support/IpcDir.h"
#include "support/RawPeer.h"
#include "system/Messages.h"

namespace {

const std::string kNames[] = {"A", "B", "StateMgr", "Me", "", "../x"};
constexpr unsigned int kTypes[] = {1, 2,          LinxIpc::kShutdownNotice, LinxIpc::kProcessDiedNotice,
                                   0, 0x4C494E58, MetadataMgrMsg_Ping,      MetadataMgrMsg_MetadataToFile};

// As root, connections made while this object lives are an observer's.
class AsObserver {
 public:
  explicit AsObserver(bool wanted) : root_(wanted && geteuid() == 0) {
    if (root_) Require(seteuid(4242) == 0);
  }
  ~AsObserver() {
    if (root_) Require(seteuid(0) == 0);
  }
  AsObserver(const AsObserver&) = delete;
  AsObserver& operator=(const AsObserver&) = delete;

 private:
  const bool root_;
};

const std::string kObserver = "Observer";

// Whether an observer may send this message.
bool IsQuestion(unsigned int type) {
  return type == SubscribeMsg_Subscribe || type == SubscribeMsg_Unsubscribe || type == LogLevelMsg_Get ||
         type == MetadataMgrMsg_Ping || type == MetadataMgrMsg_GetLastSystemTick;
}

class Conversation {
 public:
  Conversation() {
    Require(me_.Init() == 0);
    me_.RegisterHandler(1, Answer, nullptr);
    me_.RegisterProcessDied(Answer, nullptr);
    ipc::OnPeerGone(
        me_, [](void*, const std::string& peer) { Require(!peer.empty()); }, nullptr);
  }

  void Step(Input& input) {
    RawPeer& peer = peers_[input.Below(peers_.size())];
    switch (input.Below(13)) {
      case 0:
        peer = RawPeer::To("Me");
        break;
      case 1:
        peer = RawPeer::To("Me", AnyName(input));
        break;
      case 2:
        if (const std::string name = input.Text(); name != kObserver) (void)peer.Send(HelloPacket(name));
        break;
      case 11: {
        const AsObserver observer(true);
        peer = RawPeer::To("Me", input.Below(2) == 0 ? kObserver : AnyName(input));
        break;
      }
      case 3:
        (void)peer.Send(input.Text());
        break;
      case 4:
        peer.Close();
        break;
      case 5:
        (void)peer.Receive(0);
        break;
      case 6:
        Wait(input);
        break;
      case 7:
        Tell(input);
        break;
      case 8:
        Queue(input);
        break;
      case 9:
        (void)peer.Send(Packet(AnyType(input), std::string(4090 + input.Below(20), 'x')));
        break;
      case 10:
        (void)peer.Send(Packet(AnyType(input), input.Text()));
        break;
      default:
        (void)me_.Receive(0, 0, LinxIpc::emptyString, nullptr);
    }
  }

  // Closes all peers and requires that a good peer is served.
  void End() {
    for (RawPeer& peer : peers_) peer.Close();
    while (me_.Receive(0, 0, LinxIpc::emptyString, &message_) == 0) RequireAllowed(message_);
    while (TakesOne()) {
    }
    const RawPeer good = RawPeer::To("Me", "Good");
    Require(good.Send(Packet(77, "alive")) == 0);
    Require(me_.Receive(1000, 77, "Good", &message_) == 0 && message_.Size() == 5);
  }

 private:
  // Only root can be both the system and an observer.
  static void RequireAllowed(const IpcMessage& message) {
    Require(geteuid() != 0 || message.GetSender() != kObserver || IsQuestion(message.MsgType()));
  }

  static void Answer(LinxIpc* ipc, void* /*context*/) {
    IpcMessage& message = ipc->CurrentMessage();
    RequireAllowed(message);
    const std::string sender = message.GetSender();
    (void)message.Allocate(2, 0, nullptr);
    (void)ipc->Notify(sender, message, false);
  }

  static const std::string& AnyName(Input& input) { return kNames[input.Below(std::size(kNames))]; }
  static unsigned int AnyType(Input& input) { return kTypes[input.Below(std::size(kTypes))]; }

  // After a shutdown request Receive reports it for ever; the message type shows whether a message came.
  bool TakesOne() {
    (void)me_.CurrentMessage().Allocate(0xFFFF, 0, nullptr);
    const int result = me_.Receive(0, 0, LinxIpc::emptyString, nullptr);
    return result != ETIMEDOUT && me_.CurrentMessage().MsgType() != 0xFFFF;
  }

  void Wait(Input& input) {
    const unsigned int type = AnyType(input);
    const std::string& sender = AnyName(input);
    if (me_.Receive(0, type, sender, &message_) != 0) return;
    Require(type == 0 || message_.MsgType() == type);
    Require(sender.empty() || message_.GetSender() == sender);
    RequireAllowed(message_);
    Require(message_.MsgType() != LinxIpc::kShutdownNotice && message_.MsgType() != 0x4C494E58);
  }

  void Tell(Input& input) {
    const std::string& name = AnyName(input);
    (void)message_.Allocate(AnyType(input), static_cast<unsigned int>(input.Byte() * 16), nullptr);
    (void)me_.Notify(name, message_, false);
  }

  void Queue(Input& input) {
    constexpr std::size_t kMaxQueued = 16384;
    const std::string& name = AnyName(input);
    const std::string payload(input.Byte() * 16UL, 'q');
    const auto* bytes = reinterpret_cast<const unsigned char*>(payload.data());
    for (int i = 0; i < 40; ++i) (void)ipc::PostToPeer(me_, name, 3, bytes, payload.size(), kMaxQueued);
    Require(ipc::PostedBytes(me_, name) <= kMaxQueued);
  }

  LinxIpc me_{"Me"};
  std::array<RawPeer, 5> peers_;
  IpcMessage message_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const IpcDir directory;
  (void)chmod(directory.Beside("").c_str(), 0755);
  LogClient::Instance().Level(255);
  Input input(data, size);
  Conversation conversation;
  for (int steps = 0; !input.Done() && steps < 200; ++steps) conversation.Step(input);
  conversation.End();
  return 0;
}
