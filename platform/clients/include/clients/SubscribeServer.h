#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "ipc/LinxIpc.h"
#include "items/Item.h"

// Publishes numbered items to other processes: keeps the subscribers, answers their requests and sends them
// changes. Removes a subscriber when its last connection closes.
//
// Queues notices for a subscriber whose socket is full, up to a limit; then drops, counts and logs them.
// Never waits for a subscriber.
//
// The endpoint must outlive every call, but may be destroyed before the object. Use one server for an
// endpoint: a later one replaces an earlier one.
class SubscribeServer {
 public:
  static constexpr std::size_t kMaxSubscriptions = 256;
  static constexpr std::ptrdiff_t kMaxOfOneSubscriber = 32;

  explicit SubscribeServer(LinxIpc& ipc);
  SubscribeServer(const SubscribeServer&) = delete;
  SubscribeServer& operator=(const SubscribeServer&) = delete;

  // Sends the item to every subscriber of `itemId`.
  virtual void NotifySubscribers(unsigned int itemId, Item& item);

  // Called when a process asks for the current value of an item: allocates `reply` with `messageType` and
  // encodes the value into it. An unchanged reply refuses the request.
  virtual void GetItem(unsigned int itemId, IpcMessage& reply, unsigned int messageType) = 0;

  virtual ~SubscribeServer();

  // Notices dropped because their subscriber was too slow.
  std::uint64_t LostNotices() const { return lostNotices_; }
  std::size_t Subscriptions() const { return subscriptions_.size(); }
  // Bytes queued for the slowest subscriber. A server that must not lose notices waits until these are few.
  std::size_t WaitingBytes() const;

 private:
  struct Subscription {
    std::string subscriber;
    unsigned int itemId;
    unsigned int notificationId;
    unsigned int lost;  // dropped notices not logged yet

    bool operator==(const Subscription& other) const {
      return subscriber == other.subscriber && itemId == other.itemId &&
             notificationId == other.notificationId;
    }
  };

  struct Lines;

  static void HandleSubscribe(LinxIpc* ipc, void* context);
  static void HandleUnsubscribe(LinxIpc* ipc, void* context);
  static void HandlePeerGone(void* context, const std::string& peer);

  unsigned int Accept(const Subscription& wanted, bool itemExists);
  void Publish(Subscription& subscription, const IpcMessage& notice);

  LinxIpc& ipc_;
  std::vector<Subscription> subscriptions_;
  IpcMessage notice_;
  std::uint64_t lostNotices_ = 0;
  std::unique_ptr<Lines> lines_;
};
