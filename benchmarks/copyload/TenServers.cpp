#include "TenServers.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "clients/SubscribeServer.h"
#include "log/LogClient.h"
#include "support/EventKinds.h"
#include "support/Eventually.h"
#include "support/RawPeer.h"
#include "system/BigEndian.h"
#include "system/Messages.h"
#include "system/Servers.h"

namespace {

using Clock = std::chrono::steady_clock;

// Messages between this program and its servers.
constexpr unsigned int kBegin = 60000, kEnd = 60001, kEnded = 60002;

// A payload as an item.
class Bytes : public Item {
 public:
  explicit Bytes(std::string bytes) : bytes_(std::move(bytes)) {}
  unsigned int Size() const override { return static_cast<unsigned int>(bytes_.size()); }
  unsigned char* Encode(unsigned char* p) const override {
    return std::copy(bytes_.begin(), bytes_.end(), p);
  }
  unsigned char* Decode(unsigned char* p) override { return p; }

 private:
  std::string bytes_;
};

// A payload that this notice has.
const std::string& PayloadOf(unsigned int notice) {
  for (const EventKind& kind : EventKinds()) {
    if (kind.type == notice) return kind.payload;
  }
  std::abort();
}

class Server : public SubscribeServer {
 public:
  Server(LinxIpc& ipc, const ServerRow& row)
      : SubscribeServer(ipc), ipc_(ipc), row_(row), item_(PayloadOf(row.items.front().notificationId)) {
    ipc.RegisterHandler(kBegin, OnBegin, this);
    ipc.RegisterHandler(kEnd, OnEnd, this);
  }

  void GetItem(unsigned int itemId, IpcMessage& reply, unsigned int messageType) override {
    for (const ServedItem& item : row_.items) {
      if (item.id != itemId) continue;
      std::string payload = PayloadOf(item.notificationId);
      (void)reply.Allocate(messageType, static_cast<unsigned int>(payload.size()), payload.data());
    }
  }

  // A turn: takes a message or waits for the next notice that is due.
  void Turn() {
    const auto wait = std::chrono::duration_cast<std::chrono::milliseconds>(due_ - Clock::now()).count();
    const int mostMs = publishes_ ? static_cast<int>(std::clamp<long>(static_cast<long>(wait), 1, 10)) : 10;
    (void)ipc_.Receive(mostMs, 0, LinxIpc::emptyString, nullptr);
    for (; publishes_ && Clock::now() >= due_; due_ += period_, ++sent_)
      NotifySubscribers(row_.items.front().id, item_);
    mostWaiting_ = std::max(mostWaiting_, WaitingBytes());
    if (asker_.empty() || WaitingBytes() > 0) return;
    Send(ipc_, asker_, kEnded,
         U32(sent_) + U32(static_cast<std::uint32_t>(LostNotices())) +
             U32(static_cast<std::uint32_t>(mostWaiting_)));
    asker_.clear();
  }

 private:
  static void OnBegin(LinxIpc* ipc, void* context) {
    auto& self = *static_cast<Server*>(context);
    self.period_ =
        std::chrono::nanoseconds(std::chrono::seconds(1)) / GetU32(ipc->CurrentMessage().DataPtr());
    self.due_ = Clock::now();
    self.publishes_ = true;
  }
  static void OnEnd(LinxIpc* ipc, void* context) {
    static_cast<Server*>(context)->publishes_ = false;
    static_cast<Server*>(context)->asker_ = ipc->CurrentMessage().GetSender();
  }

  LinxIpc& ipc_;
  const ServerRow& row_;
  Bytes item_;
  bool publishes_ = false;
  Clock::time_point due_ = Clock::now();
  std::chrono::nanoseconds period_{};
  std::uint32_t sent_ = 0;
  std::size_t mostWaiting_ = 0;
  std::string asker_;
};

// Leads the process through its start, as the state manager does.
void Lead(LinxIpc& ipc, int* told) {
  ipc.RegisterHandler(
      StateMgrProcessMsg_Started,
      [](LinxIpc* me, void*) { Send(*me, "MetadataMgr", StateMgrProcessMsg_Subscribe, "1"); }, nullptr);
  ipc.RegisterHandler(
      StateMgrProcessMsg_Subscribed,
      [](LinxIpc* me, void* context) {
        Send(*me, "MetadataMgr", StateMgrProcessMsg_FullRun);
        Need(write(*static_cast<int*>(context), "", 1) == 1, "telling full run");
      },
      told);
}

int Serve(const ServerRow& row, int told) {
  LogClient::Instance().Level(0);
  LinxIpc ipc(row.name);
  Need(ipc.Init() == 0 && write(told, "", 1) == 1, row.name);
  if (row.process == e_Process_StateMgr) Lead(ipc, &told);
  Server server(ipc, row);
  for (;;) server.Turn();
}

}  // namespace

void Need(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "%s failed\n", what);
  std::exit(1);
}

void Send(LinxIpc& from, const std::string& to, unsigned int type, std::string payload) {
  IpcMessage message;
  (void)message.Allocate(type, static_cast<unsigned int>(payload.size()), payload.data());
  Need(Eventually([&] { return from.Notify(to, message, true) == 0; }), "a message");
}

TenServers::TenServers() {
  Need(pipe(told_) == 0, "pipe");
  for (const ServerRow& row : servers::kAll) {
    children_.push_back(std::make_unique<Child>([this, &row] { return Serve(row, told_[1]); }));
    AwaitByte();
  }
}

TenServers::~TenServers() {
  for (const int fd : told_) (void)close(fd);
}

void TenServers::AwaitByte() const {
  char byte = 0;
  Need(read(told_[0], &byte, 1) == 1, "a server");
}

void TenServers::AwaitFullRun() const {
  AwaitByte();
}

void TenServers::Begin(LinxIpc& ipc, unsigned int perSecond) {
  for (const ServerRow& row : servers::kAll) Send(ipc, row.name, kBegin, U32(perSecond));
}

std::vector<Published> TenServers::End(LinxIpc& ipc) {
  constexpr int kTimeoutMs = 60000;
  std::vector<Published> all;
  for (const ServerRow& row : servers::kAll) Send(ipc, row.name, kEnd);
  for (const ServerRow& row : servers::kAll) {
    IpcMessage message;
    Need(ipc.Receive(kTimeoutMs, kEnded, row.name, &message) == 0 && message.Size() == 12, row.name);
    const auto word = [&message](std::size_t at) {
      return static_cast<long>(GetU32(message.DataPtr() + at));
    };
    all.push_back({row.name, word(0), word(4), word(8)});
  }
  return all;
}
