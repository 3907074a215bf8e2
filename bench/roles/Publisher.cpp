#include "Publisher.h"

#include <poll.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <sstream>

#include "Processes.h"
#include "SentLog.h"
#include "Verbs.h"
#include "system/Systick.h"

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
    if (publication.server != process_) continue;
    values_.push_back({&publication, publication.make()});
    publication.stamp(*values_.back().item, Systick().SystemTick());
  }
  for (const Reading& reading : Readings()) {
    if (reading.server == process_) sources_.push_back({&reading});
  }
}

void Publisher::AddActions(Actions& actions) {
  for (const Change& change : Changes()) {
    if (change.server != process_) continue;
    actions[change.verb] = [this, &change](const Words& words) {
      Value* value = Find(change.kind, change.id + (change.idFromArgument ? NumberOf(words[0]) : 0));
      if (value == nullptr) return Outcome{false, "there is no such item"};
      if (change.apply != nullptr) change.apply(*value->item, words);
      return Send(*value);
    };
  }
  for (Source& source : sources_) {
    actions[source.reading->verb] = [this, &source](const Words& words) {
      return SetRate(source, DecimalOf(words[0]));
    };
  }
  actions["flood"] = [this](const Words& words) { return BeginFlood(words[1], DecimalOf(words[2])); };
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

Publisher::Value* Publisher::Find(Publication::Kind kind, unsigned int id) {
  const auto found = std::find_if(values_.begin(), values_.end(), [kind, id](const Value& value) {
    return value.publication->kind == kind && value.publication->id == id;
  });
  return found == values_.end() ? nullptr : &*found;
}

Item* Publisher::ItemOf(unsigned int itemId) {
  Value* value = Find(Publication::kItem, itemId);
  return value == nullptr ? nullptr : value->item.get();
}

Outcome Publisher::SendItem(unsigned int itemId) {
  Value* value = Find(Publication::kItem, itemId);
  return value == nullptr ? Outcome{false, "there is no such item"} : Send(*value);
}

void Publisher::GetItem(unsigned int itemId, IpcMessage& reply, unsigned int messageType) {
  if (lateMs_ > 0) (void)poll(nullptr, 0, lateMs_);
  const Value* value = Find(Publication::kItem, itemId);
  if (value == nullptr || refused_.contains(itemId)) return;
  if (reply.Allocate(messageType, value->item->Size(), nullptr) == 0) (void)value->item->EncodeMsg(reply);
}

// What nobody has subscribed to, or the subscriber is too slow for, is not in the list of what was sent.
Outcome Publisher::Send(Value& value) {
  if (value.publication->kind == Publication::kItem && server_->Subscriptions() == 0) {
    return {true, "nobody has subscribed"};
  }
  Outcome outcome = Transmit(value);
  if (outcome.ok) {
    LogSent(ProcessName(process_), value.publication->source + value.publication->describe(*value.item));
  }
  return outcome;
}

Outcome Publisher::Transmit(Value& value) {
  const Publication& publication = *value.publication;
  const std::uint32_t tick = Systick().SystemTick();
  publication.stamp(*value.item, tick);
  if (publication.kind == Publication::kMessage) {
    IpcMessage message;
    (void)message.Allocate(publication.id, value.item->Size(), nullptr);
    (void)value.item->EncodeMsg(message);
    if (ipc_->Notify(MetadataMgrName(), message, true) != 0) {
      return {false, "MetadataMgr cannot be told"};
    }
  } else {
    const std::uint64_t lost = server_->LostNotices();
    server_->NotifySubscribers(publication.id, *value.item);
    if (server_->LostNotices() != lost) return {false, "the subscriber is too slow"};
  }
  return {true, "sent at tick " + std::to_string(tick)};
}

// ---- Readings

// "BEGIN SPEED": the steady clock's time in microseconds, and how many times faster the drive runs.
void Publisher::DriveBeginsHandler(LinxIpc* ipc, void* self) {
  auto& publisher = *static_cast<Publisher*>(self);
  std::istringstream text(TextOf(ipc->CurrentMessage()));
  std::int64_t beginUs = 0;
  double speed = 0;
  if (!(text >> beginUs >> speed) || !(speed > 0)) return;
  publisher.begin_ = Clock::time_point(std::chrono::microseconds(beginUs));
  publisher.speed_ = speed;
  publisher.driving_ = true;
  for (Source& source : publisher.sources_) publisher.Align(source);
}

double Publisher::DriveSeconds() const {
  return std::chrono::duration<double>(Clock::now() - begin_).count() * speed_;
}

Outcome Publisher::SetRate(Source& source, double perSecond) {
  source.perSecond = perSecond;
  if (driving_) Align(source);
  return {true, "from now on"};
}

// Readings stand at multiples of their distance, so that those of a drive are the same each time.
void Publisher::Align(Source& source) const {
  if (source.perSecond > 0)
    source.nextSecond = std::ceil(DriveSeconds() * source.perSecond) / source.perSecond;
}

int Publisher::MsToNextReading() const {
  double seconds = -1;
  for (const Source& source : sources_) {
    if (!driving_ || source.perSecond <= 0) continue;
    const double wait = std::max(0.0, source.nextSecond - DriveSeconds()) / speed_;
    if (seconds < 0 || wait < seconds) seconds = wait;
  }
  constexpr double kLongest = 1000;
  return seconds < 0 ? -1 : static_cast<int>(std::ceil(std::min(seconds, kLongest) * 1000));
}

// A reading is of the time at which it is due, not that at which it is sent.
void Publisher::SendReadings() {
  if (!driving_) return;
  for (Source& source : sources_) {
    while (source.perSecond > 0 && source.nextSecond <= DriveSeconds()) {
      Value* value = Find(Publication::kItem, source.reading->itemId);
      source.reading->advance(*value->item, source.nextSecond);
      (void)Send(*value);
      source.nextSecond += 1 / source.perSecond;
    }
  }
}

// ---- A flood

Outcome Publisher::BeginFlood(const std::string& source, double seconds) {
  for (Value& value : values_) {
    if (value.publication->source != source) continue;
    const std::chrono::duration<double> length(seconds / speed_);
    flood_ = {&value, Clock::now() + std::chrono::duration_cast<Clock::duration>(length)};
    return {true, "begins"};
  }
  return {false, "it has no such value"};
}

// Sends until the peer takes no more, or others have to have their turn. Then the loop sends what is
// queued, as the peer drains it.
void Publisher::GoOnFlooding() {
  constexpr int kTurn = 64;
  constexpr std::size_t kMostWaiting = 64UL * 1024;
  Flood& flood = *flood_;
  flood.waits = false;
  for (int i = 0; i < kTurn && !flood.waits; ++i) {
    flood.waits = server_->WaitingBytes() > kMostWaiting || !Transmit(*flood.value).ok;
    ++(flood.waits ? flood.pushedBack : flood.sent);
  }
  if (Clock::now() < flood.end) return;
  LogSent(ProcessName(process_), std::string("flood ") + flood.value->publication->source + " " +
                                     std::to_string(flood.sent) + " " + std::to_string(flood.pushedBack));
  flood_.reset();
}

// ---- The loop

int Publisher::WaitMs() const {
  if (flood_) return flood_->waits ? 1 : 0;
  return MsToNextReading();
}

void Publisher::DoDueWork() {
  SendReadings();
  if (flood_) GoOnFlooding();
}
