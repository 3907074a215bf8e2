#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "ipc/LinxIpc.h"
#include "items/Item.h"

// Publishes numbered items to other processes: keeps the subscribers, answers their requests and
// sends them changes. A subscriber is forgotten when its last connection closes.
//
// A notice that a subscriber cannot take at once is queued for it, up to a bound; beyond it
// notices are dropped, counted and logged. No subscriber is ever waited for.
//
// The endpoint must outlive every call, but not the object. One server an endpoint: a later one
// takes an earlier one's place.
class SubscribeServer {
 public:
  static constexpr std::size_t kMaxSubscriptions = 256;
  static constexpr std::ptrdiff_t kMaxOfOneSubscriber = 32;

  explicit SubscribeServer(LinxIpc& ipc);
  SubscribeServer(const SubscribeServer&) = delete;
  SubscribeServer& operator=(const SubscribeServer&) = delete;

  // Sends the item to every subscriber of `itemId`.
  virtual void NotifySubscribers(unsigned int itemId, Item& item);

  // Called when a process asks for the current value of an item: allocates `reply` with
  // `messageType` and encodes the value into it. Leaving the reply as it is refuses the
  // request.
  virtual void GetItem(unsigned int itemId, IpcMessage& reply, unsigned int messageType) = 0;

  virtual ~SubscribeServer();

  // Notices that were lost because their subscriber was too slow.
  std::uint64_t LostNotices() const { return lostNotices_; }
  std::size_t Subscriptions() const { return subscriptions_.size(); }
  // Bytes that wait for the slowest subscriber. A server whose notices must not be lost waits until there
  // are few.
  std::size_t WaitingBytes() const;

 private:
  struct Subscription {
    std::string subscriber;
    unsigned int itemId;
    unsigned int notificationId;
    unsigned int lost;  // notices that no log line has told yet

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
