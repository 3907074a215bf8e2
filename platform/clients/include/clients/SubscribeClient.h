#pragma once

#include <memory>
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

  // `timeoutMs` bounds every Subscribe, the wait for a server that is not up yet included.
  SubscribeClient(LinxIpc& ipc, const std::string& server, int timeoutMs = kDefaultTimeoutMs);
  virtual ~SubscribeClient();
  SubscribeClient(const SubscribeClient&) = delete;
  SubscribeClient& operator=(const SubscribeClient&) = delete;

  // Subscribes to an item of the server: fills `item` with its current value, and from now on
  // every change arrives as a message of type `notificationId`, for which `handler` is registered
  // on the endpoint. The same item and id again takes the place of the earlier subscription.
  // The request goes to the process that listens under the server's name. A change that another process
  // sends, or that does not hold the whole item, is dropped with one mask-2 line; one without payload is not.
  // ETIMEDOUT: no answer in time; ESHUTDOWN: a shutdown notice waits; ENOENT: the server has no such item;
  // EBADMSG: its value is too short for `item`. After a failure `item` and the registered handlers are as
  // they were.
  int Subscribe(unsigned int itemId, unsigned int notificationId, Item& item, LinxIpc::Handler handler,
                void* context);

  // Sends every subscription again, for a server that was restarted. Only sends. The answers are
  // swallowed when they come; the first refusal among them is one mask-1 line. 0, also
  // without any subscription, or the first failure to send; the rest is sent all the same.
  int Resubscribe();

  // Ends all subscriptions: tells the server, as far as it can be told at once, and removes the
  // handlers. With `wait` a full server is given up to 10 ms.
  void UnsubscribeAll(bool wait);

 protected:
  // Whether the value that an answer brings is used. Where it is not, `item` stays as it is, and the value
  // may be missing.
  virtual bool UsesValue() const { return true; }
  // An item of the class of `item`, to tell whether a notice holds one; null: all notices count.
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
  bool renewing_ = false;  // a renewal was sent, and no refusal of it was logged
};
