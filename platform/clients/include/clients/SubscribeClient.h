#pragma once

#include <string>
#include <vector>

#include "ipc/LinxIpc.h"
#include "items/Item.h"

// The subscriptions of this process with one server. Results are errno values, 0 for success.
//
// The endpoint must outlive every call, but not the object: the destructor does not use it.
class SubscribeClient {
 public:
  static constexpr int kDefaultTimeoutMs = 10000;

  // `timeoutMs` bounds every Subscribe and Poll, the wait for a server that is not up yet
  // included.
  SubscribeClient(LinxIpc& ipc, const std::string& server, int timeoutMs = kDefaultTimeoutMs);
  virtual ~SubscribeClient();
  SubscribeClient(const SubscribeClient&) = delete;
  SubscribeClient& operator=(const SubscribeClient&) = delete;

  // Subscribes to an item of the server: fills `item` with its current value, and from now on
  // every change arrives as a message of type `notificationId`, for which `handler` is registered
  // on the endpoint. The same item and id again takes the place of the earlier subscription.
  // ETIMEDOUT: no answer in time; ENOENT: the server has no such item; EBADMSG: its value is too
  // short for `item`. After a failure `item` and the registered handlers are as they were.
  int Subscribe(unsigned int itemId, unsigned int notificationId, Item& item, LinxIpc::Handler handler,
                void* context);

  // Asks for an item's current value without subscribing. Results as Subscribe's.
  int Poll(unsigned int itemId, Item& item);

  // Sends every subscription again, for a server that was restarted. Only sends: the answers are
  // taken out of the stream when they come, a refusal among them is logged with mask 1. 0, also
  // without any subscription, or the first failure to send; the rest is sent all the same.
  int Resubscribe();

  // Ends all subscriptions: tells the server, as far as it can be told at once, and removes the
  // handlers. With `wait` a full server is given up to 10 ms.
  void UnsubscribeAll(bool wait);

 private:
  struct Subscription {
    unsigned int itemId;
    unsigned int notificationId;
  };

  int Ask(const Subscription& subscription, Item& item);
  int Send(unsigned int type, const Subscription& subscription, bool wait);

  LinxIpc& ipc_;
  const std::string server_;
  const int timeoutMs_;
  std::vector<Subscription> subscriptions_;
};
