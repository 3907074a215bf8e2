#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ipc/LinxIpc.h"
#include "items/Item.h"

// The subscriptions of this process with one server. Results are errno values, 0 for success.
//
// The endpoint must outlive every call, but may be destroyed before the object.
class SubscribeClient {
 public:
  static constexpr int kDefaultTimeoutMs = 10000;

  // `timeoutMs` limits every Subscribe, including the wait for a server that does not run yet.
  SubscribeClient(LinxIpc& ipc, const std::string& server, int timeoutMs = kDefaultTimeoutMs);
  virtual ~SubscribeClient();
  SubscribeClient(const SubscribeClient&) = delete;
  SubscribeClient& operator=(const SubscribeClient&) = delete;

  // Subscribes to an item of the server and fills `item` with its current value. Each change then arrives as
  // a message of type `notificationId` and calls `handler`. The same item and id again replace the earlier
  // subscription. The request goes only to the process that listens under the server's name. Drops and logs,
  // with mask 2, a change that another process sends or that does not hold the whole item; delivers a change
  // without payload. ETIMEDOUT: no answer in time; ESHUTDOWN: a shutdown notice is queued; ENOENT: the server
  // has no such item; EBADMSG: the value is too short for `item`. A failure leaves `item` and the handlers
  // unchanged.
  int Subscribe(unsigned int itemId, unsigned int notificationId, Item& item, LinxIpc::Handler handler,
                void* context);

  // Sends every subscription again, after a restart of the server, without waiting for the answers. Logs the
  // first refusal with mask 1 when it arrives. Returns 0, also without subscriptions, or the first failure to
  // send; sends the remaining subscriptions even after a failure.
  int Resubscribe();

  // Ends all subscriptions: notifies the server without blocking and removes the handlers. With `wait`, waits
  // up to 10 ms for a server whose socket is full.
  void UnsubscribeAll(bool wait);

 protected:
  // Whether Subscribe uses the value in the answer. If not, `item` stays unchanged and the value may be
  // missing.
  virtual bool UsesValue() const { return true; }
  // An item of the same class as `item`, to check that notices hold the whole item; null: no check.
  virtual std::unique_ptr<Item> ScratchItem(const Item& item) const { return item.New(); }

 private:
  struct Subscription {
    unsigned int itemId;
    unsigned int notificationId;
  };

  static void AnswerHandler(LinxIpc* ipc, void* context);

  int Ask(const Subscription& subscription, Item& item);
  int TakeAnswer(IpcMessage& answer, Item& item) const;
  void TakeLateAnswer(const IpcMessage& answer);
  int Send(unsigned int type, const Subscription& subscription, bool wait);

  LinxIpc& ipc_;
  const std::string server_;
  const int timeoutMs_;
  std::vector<Subscription> subscriptions_;
  bool renewing_ = false;  // a renewal was sent, and no refusal was logged yet
};
