#include "clients/SubscribeClient.h"

#include <algorithm>
#include <array>
#include <cerrno>

#include "NoticeCheck.h"
#include "SubscribeProtocol.h"
#include "ipc/PeerQueue.h"
#include "log/LogLine.h"
#include "os/MonotonicClock.h"
#include "system/BigEndian.h"
#include "system/Messages.h"

using ipc::subscribe::Asked;
using ipc::subscribe::AwaitAnswer;
using ipc::subscribe::kAccepted;
using ipc::subscribe::kAnswerHeaderSize;

namespace {

constexpr int kRetryMs = 20;  // between two attempts to reach a server that does not run

// The result in an answer; an answer that is too short counts as accepted.
unsigned int ResultOf(const IpcMessage& answer) {
  return answer.Size() < kAnswerHeaderSize ? kAccepted : GetU32(answer.DataPtr() + 8);
}

bool IsAnswerTo(const IpcMessage& answer, unsigned int itemId, unsigned int notificationId) {
  const unsigned char* data = answer.DataPtr();
  return answer.Size() >= kAnswerHeaderSize && GetU32(data) == itemId && GetU32(data + 4) == notificationId;
}

// All clients of this process, to find the client of an answer that no call waits for.
std::vector<SubscribeClient*>& Clients() {
  static std::vector<SubscribeClient*> clients;
  return clients;
}

}  // namespace

SubscribeClient::SubscribeClient(LinxIpc& ipc, const std::string& server, int timeoutMs)
    : ipc_(ipc), server_(server), timeoutMs_(timeoutMs) {
  Clients().push_back(this);
  ipc_.RegisterHandler(SubscribeMsg_Answer, AnswerHandler, nullptr);
}

SubscribeClient::~SubscribeClient() {
  std::erase(Clients(), this);
}

// Takes an answer to a renewal, or one that came too late.
void SubscribeClient::AnswerHandler(LinxIpc* ipc, void* /*context*/) {
  const IpcMessage& answer = ipc->CurrentMessage();
  for (SubscribeClient* client : Clients()) {
    if (&client->ipc_ == ipc && client->server_ == answer.GetSender()) client->TakeLateAnswer(answer);
  }
}

// Resubscribe has already returned, so logs the failure here, under the process's name.
void SubscribeClient::TakeLateAnswer(const IpcMessage& answer) {
  if (!renewing_ || ResultOf(answer) == kAccepted) return;
  renewing_ = false;
  const std::string& process = LogClient::Instance().ProcessName();
  const LogSource log{process.c_str()};
  log(kLogError, process, " FAILED to resubsribe to a server");
}

int SubscribeClient::Subscribe(unsigned int itemId, unsigned int notificationId, Item& item,
                               LinxIpc::Handler handler, void* context) {
  const int result = Ask({itemId, notificationId}, item);
  if (result != 0) return result;
  ipc::RegisterHandler(ipc_, notificationId, handler, context, ipc::NoticeCheck(server_, ScratchItem(item)));
  const bool known = std::any_of(subscriptions_.begin(), subscriptions_.end(), [&](const Subscription& held) {
    return held.itemId == itemId && held.notificationId == notificationId;
  });
  if (!known) subscriptions_.push_back({itemId, notificationId});
  return 0;
}

int SubscribeClient::Ask(const Subscription& subscription, Item& item) {
  const std::int64_t endMs = os::MonotonicMs() + timeoutMs_;
  IpcMessage answer;
  Asked asked{server_, 0};  // connection 0: not asked yet
  for (int leftMs = timeoutMs_; leftMs > 0; leftMs = static_cast<int>(endMs - os::MonotonicMs())) {
    if (asked.connection == 0 && Send(SubscribeMsg_Subscribe, subscription, true) == 0)
      asked.connection = ipc::ServerConnection(ipc_, server_);
    const bool reached = asked.connection != 0;
    const os::Errno result =
        reached ? AwaitAnswer(ipc_, leftMs, SubscribeMsg_Answer, asked, answer)
                : ipc_.Receive(std::min(leftMs, kRetryMs), SubscribeMsg_Answer, server_, &answer);
    if (result == ENOTCONN) asked.connection = 0;  // the server exited without an answer: ask the new one
    if (result == ENOTCONN || result == ETIMEDOUT) continue;
    if (result.Failed()) return result.Value();
    if (!reached) continue;  // an answer without a request
    if (IsAnswerTo(answer, subscription.itemId, subscription.notificationId)) return TakeAnswer(answer, item);
    TakeLateAnswer(answer);
  }
  return ETIMEDOUT;
}

int SubscribeClient::TakeAnswer(IpcMessage& answer, Item& item) const {
  if (const unsigned int result = ResultOf(answer); result != kAccepted) return static_cast<int>(result);
  if (!UsesValue()) return 0;
  return item.DecodeBytes(answer.DataPtr() + kAnswerHeaderSize, answer.Size() - kAnswerHeaderSize) ? 0
                                                                                                   : EBADMSG;
}

int SubscribeClient::Send(unsigned int type, const Subscription& subscription, bool wait) {
  std::array<char, ipc::subscribe::kRequestSize> payload;
  auto* bytes = reinterpret_cast<unsigned char*>(payload.data());
  PutU32(bytes, subscription.itemId);
  PutU32(bytes + 4, subscription.notificationId);
  IpcMessage request;
  (void)request.Allocate(type, payload.size(), payload.data());
  return ipc::NotifyServer(ipc_, server_, request, wait);
}

int SubscribeClient::Resubscribe() {
  renewing_ = true;
  int failure = 0;
  for (const Subscription& subscription : subscriptions_) {
    const int result = Send(SubscribeMsg_Subscribe, subscription, true);
    if (failure == 0) failure = result;
  }
  if (failure != 0) renewing_ = false;  // the caller logs it
  return failure;
}

void SubscribeClient::UnsubscribeAll(bool wait) {
  for (const Subscription& subscription : subscriptions_) {
    (void)Send(SubscribeMsg_Unsubscribe, subscription, wait);
    ipc_.DeregisterHandler(subscription.notificationId);
  }
  subscriptions_.clear();
}
