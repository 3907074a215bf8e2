#include "Publisher.h"

#include <poll.h>

#include <algorithm>

#include "Changes.h"
#include "Processes.h"
#include "SentLog.h"
#include "system/Messages.h"
#include "system/Systick.h"

namespace bench {

namespace {

constexpr const char* kTaken = "taken";

}  // namespace

class Publisher::Server : public SubscribeServer {
 public:
  Server(LinxIpc& ipc, Publisher& publisher) : SubscribeServer(ipc), publisher_(publisher) {}
  void GetItem(unsigned int itemId, IpcMessage& reply, unsigned int messageType) override {
    publisher_.GetItem(itemId, reply, messageType);
  }

 private:
  Publisher& publisher_;
};

Publisher::Publisher(e_Process server) : process_(server) {
  for (const Publication& publication : Publications()) {
    if (publication.source->server != process_) continue;
    values_.push_back({&publication, publication.make()});
    publication.stamp(*values_.back().item, Systick().SystemTick());
  }
}

void Publisher::AddActions(Actions& actions) {
  for (const Change& change : Changes()) {
    if (change.source->server != process_) continue;
    actions[change.verb] = [this, &change](const Words& words) {
      Value* value = Find(change.source->kind, change.Id(words));
      if (value == nullptr) return Outcome{false, "there is no such item"};
      if (change.apply != nullptr) change.apply(*value->item, words);
      return Send(*value);
    };
  }
  for (const Reading& reading : Readings()) {
    if (reading.source->server != process_) continue;
    actions[reading.verb] = [this, &reading](const Words& words) {
      schedule_.SetRate(reading, DecimalOf(words[0]));
      return Outcome{true, "from now on"};
    };
  }
  actions["flood"] = [this](const Words& words) { return BeginFlood(words[1], DecimalOf(words[2])); };
  actions["payload"] = [this](const Words& words) { return SendBytes(words[1], words[2]); };
  actions["refuse"] = [this](const Words& words) {
    refused_.insert(NumberOf(words[1]));
    return Outcome{true, "refused from now on"};
  };
  actions["late"] = [this](const Words& words) {
    lateMs_ = static_cast<int>(NumberOf(words[1]));
    return Outcome{true, "late from now on"};
  };
}

void Publisher::Open(LinxIpc& ipc) {
  ipc_ = &ipc;
  server_ = std::make_unique<Server>(ipc, *this);
  ipc.RegisterHandler(BenchMsg_DriveBegins, DriveBeginsHandler, this);
}

Publisher::Value* Publisher::Find(Source::Kind kind, unsigned int id) {
  const auto found = std::find_if(values_.begin(), values_.end(), [kind, id](const Value& value) {
    const Source& source = *value.publication->source;
    return source.kind == kind && source.id == id;
  });
  return found == values_.end() ? nullptr : &*found;
}

Publisher::Value* Publisher::Find(std::string_view source) {
  const auto found = std::find_if(values_.begin(), values_.end(), [source](const Value& value) {
    return value.publication->source->name == source;
  });
  return found == values_.end() ? nullptr : &*found;
}

Item* Publisher::ItemOf(std::string_view source) {
  Value* value = Find(source);
  return value == nullptr ? nullptr : value->item.get();
}

Outcome Publisher::SendItem(std::string_view source) {
  Value* value = Find(source);
  return value == nullptr ? Outcome{false, "there is no such source"} : Send(*value);
}

void Publisher::GetItem(unsigned int itemId, IpcMessage& reply, unsigned int messageType) {
  if (lateMs_ > 0) (void)poll(nullptr, 0, lateMs_);
  const Value* value = Find(Source::kItem, itemId);
  if (value == nullptr || refused_.contains(itemId)) return;
  if (reply.Allocate(messageType, value->item->Size(), nullptr) == 0) (void)value->item->EncodeMsg(reply);
}

// The sent list omits values without a subscriber, and values that a slow subscriber does not accept. Their
// tick is still updated: a later subscriber receives the value with the tick of its reading.
Outcome Publisher::Send(Value& value) {
  const Publication& publication = *value.publication;
  const std::uint32_t tick = Systick().SystemTick();
  publication.stamp(*value.item, tick);
  return SendUnchanged(value, "sent at tick " + std::to_string(tick));
}

Outcome Publisher::SendUnchanged(const Value& value, const std::string& done) {
  const Publication& publication = *value.publication;
  if (publication.source->kind == Source::kItem && server_->Subscriptions() == 0) {
    return {true, "nobody has subscribed"};
  }
  Outcome outcome = Transmit(value);
  if (!outcome.ok) return outcome;
  LogSent(ProcessName(process_), std::string(publication.source->name) + publication.describe(*value.item));
  return {true, done};
}

Outcome Publisher::SendBytes(std::string_view source, const std::string& hex) {
  Value* value = Find(source);
  if (value == nullptr) return {false, "there is no such source"};
  std::string bytes;
  for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
    bytes += static_cast<char>(NumberOf("0x" + hex.substr(i, 2)));
  }
  IpcMessage message;
  const int error =
      message.Allocate(value->publication->source->id, static_cast<unsigned int>(bytes.size()), bytes.data());
  if (error != 0 || !value->item->DecodeMsg(message)) return {false, "these bytes do not hold the item"};
  const Outcome sent = SendUnchanged(*value, kTaken);
  return sent.text == kTaken ? AwaitTaken() : sent;
}

// MetadataMgr handles the messages of a connection in order, but several connections in any order. After its
// answer to a ping over this connection, another server's event is recorded later.
Outcome Publisher::AwaitTaken() {
  IpcMessage ping;
  IpcMessage answer;
  (void)ping.Allocate(MetadataMgrMsg_Ping, 0, nullptr);
  const Outcome asked =
      Request(*ipc_, MetadataMgrName(), ping, MetadataMgrMsg_PingResponse, answer, kTakenTimeoutMs);
  return {asked.ok, asked.ok ? kTaken + (" after " + asked.text) : asked.text};
}

Outcome Publisher::Transmit(const Value& value) {
  const Source& source = *value.publication->source;
  if (source.kind == Source::kMessage) return TransmitMessage(value);
  const std::uint64_t lost = server_->LostNotices();
  server_->NotifySubscribers(source.id, *value.item);
  return server_->LostNotices() == lost ? Outcome{true, ""} : Outcome{false, "the subscriber is too slow"};
}

Outcome Publisher::TransmitMessage(const Value& value) {
  IpcMessage message;
  (void)message.Allocate(value.publication->source->id, value.item->Size(), nullptr);
  (void)value.item->EncodeMsg(message);
  const int error = ipc_->Notify(MetadataMgrName(), message, true);
  return error == 0 ? Outcome{true, ""} : Outcome{false, "cannot send to MetadataMgr"};
}

void Publisher::DriveBeginsHandler(LinxIpc* ipc, void* self) {
  auto& publisher = *static_cast<Publisher*>(self);
  if (publisher.clock_.Take(TextOf(ipc->CurrentMessage()))) publisher.schedule_.Begin();
}

// ---- A flood

Outcome Publisher::BeginFlood(std::string_view source, double seconds) {
  Value* value = Find(source);
  if (value == nullptr) return {false, "there is no such source"};
  const std::chrono::duration<double> length(seconds / clock_.Speed());
  flood_ = {value, Clock::now() + std::chrono::duration_cast<Clock::duration>(length)};
  return {true, "begins"};
}

// Sends until the peer accepts no more, or other work is due. Then the loop sends the queued messages as the
// peer drains them.
void Publisher::GoOnFlooding() {
  constexpr int kTurn = 64;
  constexpr std::size_t kMostWaiting = 64UL * 1024;
  Flood& flood = *flood_;
  flood.waits = false;
  for (int i = 0; i < kTurn && !flood.waits; ++i) {
    flood.value->publication->stamp(*flood.value->item, Systick().SystemTick());
    flood.waits = server_->WaitingBytes() > kMostWaiting || !Transmit(*flood.value).ok;
    ++(flood.waits ? flood.pushedBack : flood.sent);
  }
  if (Clock::now() < flood.end) return;
  const std::string source(flood.value->publication->source->name);
  LogSent(ProcessName(process_),
          "flood " + source + " " + std::to_string(flood.sent) + " " + std::to_string(flood.pushedBack));
  flood_.reset();
}

// ---- The loop

int Publisher::WaitMs() const {
  if (flood_) return flood_->waits ? 1 : 0;
  return schedule_.MsToNext();
}

void Publisher::DoDueWork() {
  schedule_.SendDue([this](const Reading& reading, const Advance& advance, double driveSeconds) {
    Value* value = Find(reading.source->name);
    advance(*value->item, driveSeconds);
    (void)Send(*value);
  });
  if (flood_) GoOnFlooding();
}

}  // namespace bench
