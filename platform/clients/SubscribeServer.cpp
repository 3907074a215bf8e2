#include "clients/SubscribeServer.h"

#include <algorithm>
#include <array>

#include "SubscribeProtocol.h"
#include "ipc/LimitedLog.h"
#include "ipc/PeerQueue.h"
#include "log/LogLine.h"
#include "system/BigEndian.h"
#include "system/Messages.h"

namespace {

constexpr LogSource log{"SubscribeServer"};

// Reads the message as a request; logs and returns false when it is too short.
bool ReadRequest(const IpcMessage& message, ipc::LimitedLog& tooShort, unsigned int& itemId,
                 unsigned int& notificationId) {
  if (message.Size() < ipc::subscribe::kRequestSize) {
    tooShort("Request from ", message.GetSender(), " is too short");
    return false;
  }
  itemId = GetU32(message.DataPtr());
  notificationId = GetU32(message.DataPtr() + 4);
  return true;
}

// Sends the answer after the notices queued for the subscriber, so that its value is never older than theirs.
int SendAnswer(LinxIpc& ipc, const std::string& peer, unsigned int itemId, unsigned int notificationId,
               unsigned int result, const IpcMessage& value) {
  std::array<unsigned char, IpcMessage::kMaxPayload> payload;
  const std::size_t valueSize =
      result == ipc::subscribe::kAccepted
          ? std::min(value.Size(), payload.size() - ipc::subscribe::kAnswerHeaderSize)
          : 0;
  PutU32(payload.data(), itemId);
  PutU32(payload.data() + 4, notificationId);
  PutU32(payload.data() + 8, result);
  std::copy_n(value.DataPtr(), valueSize, payload.data() + ipc::subscribe::kAnswerHeaderSize);
  return ipc::PostToPeer(ipc, peer, SubscribeMsg_Answer, payload.data(),
                         ipc::subscribe::kAnswerHeaderSize + valueSize, ipc::kMaxPostedAnswerBytes);
}

}  // namespace

struct SubscribeServer::Lines {
  ipc::LimitedLog tooShort{log, kLogMalformed};
  ipc::LimitedLog unanswered{log, kLogMalformed};
  ipc::LimitedLog tooSlow{log, kLogMalformed};
  ipc::LimitedLog lost{log, kLogMalformed};
};

SubscribeServer::SubscribeServer(LinxIpc& ipc) : ipc_(ipc), lines_(std::make_unique<Lines>()) {
  ipc_.RegisterHandler(SubscribeMsg_Subscribe, HandleSubscribe, this);
  ipc_.RegisterHandler(SubscribeMsg_Unsubscribe, HandleUnsubscribe, this);
  ipc::OnPeerGone(ipc_, HandlePeerGone, this);
}

SubscribeServer::~SubscribeServer() = default;

void SubscribeServer::HandleSubscribe(LinxIpc* ipc, void* context) {
  auto& self = *static_cast<SubscribeServer*>(context);
  const IpcMessage& request = ipc->CurrentMessage();
  Subscription wanted{request.GetSender(), 0, 0, 0};
  if (!ReadRequest(request, self.lines_->tooShort, wanted.itemId, wanted.notificationId)) return;
  IpcMessage value;
  self.GetItem(wanted.itemId, value, SubscribeMsg_Answer);
  const unsigned int result = self.Accept(wanted, value.DataPtr() != nullptr);
  const int error = SendAnswer(*ipc, wanted.subscriber, wanted.itemId, wanted.notificationId, result, value);
  if (error != 0) self.lines_->unanswered("Cannot answer ", wanted.subscriber, ", error ", error);
}

unsigned int SubscribeServer::Accept(const Subscription& wanted, bool itemExists) {
  if (!itemExists) return ipc::subscribe::kNoSuchItem;
  const bool onlyValue = wanted.notificationId == 0;
  const auto held = std::find(subscriptions_.begin(), subscriptions_.end(), wanted);
  if (onlyValue || held != subscriptions_.end()) return ipc::subscribe::kAccepted;
  const auto ofSame =
      std::count_if(subscriptions_.begin(), subscriptions_.end(),
                    [&wanted](const Subscription& other) { return other.subscriber == wanted.subscriber; });
  if (subscriptions_.size() >= kMaxSubscriptions || ofSame >= kMaxOfOneSubscriber)
    return ipc::subscribe::kNoRoom;
  subscriptions_.push_back(wanted);
  return ipc::subscribe::kAccepted;
}

void SubscribeServer::HandleUnsubscribe(LinxIpc* ipc, void* context) {
  auto& self = *static_cast<SubscribeServer*>(context);
  const IpcMessage& request = ipc->CurrentMessage();
  Subscription unwanted{request.GetSender(), 0, 0, 0};
  if (!ReadRequest(request, self.lines_->tooShort, unwanted.itemId, unwanted.notificationId)) return;
  std::erase(self.subscriptions_, unwanted);
}

void SubscribeServer::HandlePeerGone(void* context, const std::string& peer) {
  auto& self = *static_cast<SubscribeServer*>(context);
  std::erase_if(self.subscriptions_, [&peer](const Subscription& held) { return held.subscriber == peer; });
}

void SubscribeServer::NotifySubscribers(unsigned int itemId, Item& item) {
  if (notice_.Allocate(0, item.Size(), nullptr) != 0 || !item.EncodeMsg(notice_)) return;
  for (Subscription& subscription : subscriptions_) {
    if (subscription.itemId == itemId) Publish(subscription, notice_);
  }
}

std::size_t SubscribeServer::WaitingBytes() const {
  std::size_t most = 0;
  for (const Subscription& subscription : subscriptions_) {
    most = std::max(most, ipc::PostedBytes(ipc_, subscription.subscriber));
  }
  return most;
}

void SubscribeServer::Publish(Subscription& subscription, const IpcMessage& notice) {
  const int error = ipc::PostToPeer(ipc_, subscription.subscriber, subscription.notificationId,
                                    notice.DataPtr(), notice.Size(), ipc::kMaxPostedNoticeBytes);
  if (error != 0) {
    ++lostNotices_;
    if (subscription.lost++ == 0) lines_->tooSlow(subscription.subscriber, " is too slow, notices are lost");
  } else if (subscription.lost > 0 && lines_->lost.Due()) {
    lines_->lost(subscription.subscriber, " lost ", subscription.lost, " notices of item ",
                 subscription.itemId);
    subscription.lost = 0;
  }
}
