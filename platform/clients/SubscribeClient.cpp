#include "clients/SubscribeClient.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>

#include "SubscribeProtocol.h"
#include "ipc/PeerQueue.h"
#include "log/LogLine.h"
#include "system/BigEndian.h"
#include "system/Messages.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr LogSource log{"SubscribeClient"};
constexpr int kRetryMs = 20;  // between two attempts to reach a server that is not up

int MsUntil(Clock::time_point end) {
  return static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count());
}

bool IsAnswerTo(const IpcMessage& answer, unsigned int itemId, unsigned int notificationId) {
  const unsigned char* data = answer.DataPtr();
  return answer.Size() >= subscribe::kAnswerHeaderSize && GetU32(data) == itemId &&
         GetU32(data + 4) == notificationId;
}

// An answer that nobody waits for: that of a renewal, or one that came too late.
void SwallowAnswer(const IpcMessage& answer) {
  if (answer.Size() < subscribe::kAnswerHeaderSize) return;
  const unsigned int result = GetU32(answer.DataPtr() + 8);
  if (result == subscribe::kAccepted) return;
  log(kLogError, answer.GetSender(), " refused subscription to item ", GetU32(answer.DataPtr()), ", error ",
      result);
}

void AnswerHandler(LinxIpc* ipc, void* /*context*/) {
  SwallowAnswer(ipc->CurrentMessage());
}

int TakeAnswer(IpcMessage& answer, Item& item) {
  const unsigned int result = GetU32(answer.DataPtr() + 8);
  if (result != subscribe::kAccepted) return static_cast<int>(result);
  const std::size_t header = subscribe::kAnswerHeaderSize;
  return item.DecodeBytes(answer.DataPtr() + header, answer.Size() - header) ? 0 : EBADMSG;
}

}  // namespace

SubscribeClient::SubscribeClient(LinxIpc& ipc, const std::string& server, int timeoutMs)
    : ipc_(ipc), server_(server), timeoutMs_(timeoutMs) {
  ipc_.RegisterHandler(SubscribeMsg_Answer, AnswerHandler, nullptr);
}

SubscribeClient::~SubscribeClient() = default;

int SubscribeClient::Subscribe(unsigned int itemId, unsigned int notificationId, Item& item,
                               LinxIpc::Handler handler, void* context) {
  const int result = Ask({itemId, notificationId}, item);
  if (result != 0) return result;
  ipc_.RegisterHandler(notificationId, handler, context);
  const bool known = std::any_of(subscriptions_.begin(), subscriptions_.end(), [&](const Subscription& held) {
    return held.itemId == itemId && held.notificationId == notificationId;
  });
  if (!known) subscriptions_.push_back({itemId, notificationId});
  return 0;
}

int SubscribeClient::Poll(unsigned int itemId, Item& item) {
  return Ask({itemId, 0}, item);
}

int SubscribeClient::Ask(const Subscription& subscription, Item& item) {
  const Clock::time_point end = Clock::now() + std::chrono::milliseconds(timeoutMs_);
  IpcMessage answer;
  subscribe::Asked asked{server_, 0};  // connection 0: not yet
  for (int leftMs = timeoutMs_; leftMs > 0; leftMs = MsUntil(end)) {
    if (asked.connection == 0 && Send(SubscribeMsg_Subscribe, subscription, true) == 0)
      asked.connection = PeerConnection(ipc_, server_);
    const int result = asked.connection != 0
                           ? subscribe::AwaitAnswer(ipc_, leftMs, SubscribeMsg_Answer, asked, answer)
                           : ipc_.Receive(std::min(leftMs, kRetryMs), SubscribeMsg_Answer, server_, &answer);
    if (result == ENOTCONN) asked.connection = 0;  // the server went away with the request: ask its successor
    if (result == ENOTCONN || result == ETIMEDOUT) continue;
    if (result != 0) return result;
    if (IsAnswerTo(answer, subscription.itemId, subscription.notificationId)) return TakeAnswer(answer, item);
    SwallowAnswer(answer);
  }
  return ETIMEDOUT;
}

int SubscribeClient::Send(unsigned int type, const Subscription& subscription, bool wait) {
  std::array<char, subscribe::kRequestSize> payload;
  auto* bytes = reinterpret_cast<unsigned char*>(payload.data());
  PutU32(bytes, subscription.itemId);
  PutU32(bytes + 4, subscription.notificationId);
  IpcMessage request;
  (void)request.Allocate(type, payload.size(), payload.data());
  return ipc_.Notify(server_, request, wait);
}

int SubscribeClient::Resubscribe() {
  int failure = 0;
  for (const Subscription& subscription : subscriptions_) {
    const int result = Send(SubscribeMsg_Subscribe, subscription, true);
    if (failure == 0) failure = result;
  }
  return failure;
}

void SubscribeClient::UnsubscribeAll(bool wait) {
  for (const Subscription& subscription : subscriptions_) {
    (void)Send(SubscribeMsg_Unsubscribe, subscription, wait);
    ipc_.DeregisterHandler(subscription.notificationId);
  }
  subscriptions_.clear();
}
