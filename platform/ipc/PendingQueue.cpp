#include "PendingQueue.h"

#include <algorithm>
#include <utility>

#include "ipc/LinxIpc.h"

namespace ipc {

bool Filter::Matches(unsigned int messageType, const std::string& from) const {
  if (messageType == LinxIpc::kShutdownNotice) return !selective;
  return (type == 0 || type == messageType) && (sender.empty() || sender == from);
}

void PendingQueue::Add(PendingMessage message) {
  bytesBySender_[message.sender] += message.Bytes();
  bytes_ += message.Bytes();
  if (message.type == LinxIpc::kShutdownNotice) ++shutdowns_;
  messages_.push_back(std::move(message));
}

bool PendingQueue::Has(const Filter& filter) const {
  return std::any_of(messages_.begin(), messages_.end(), [&filter](const PendingMessage& message) {
    return filter.Matches(message.type, message.sender);
  });
}

bool PendingQueue::Take(const Filter& filter, PendingMessage& taken) {
  for (auto it = messages_.begin(); it != messages_.end(); ++it) {
    if (!filter.Matches(it->type, it->sender)) continue;
    taken = std::move(*it);
    messages_.erase(it);
    const auto held = bytesBySender_.find(taken.sender);
    held->second -= taken.Bytes();
    bytes_ -= taken.Bytes();
    if (held->second == 0) bytesBySender_.erase(held);
    if (taken.type == LinxIpc::kShutdownNotice) --shutdowns_;
    return true;
  }
  return false;
}

std::size_t PendingQueue::BytesFrom(const std::string& sender) const {
  const auto held = bytesBySender_.find(sender);
  return held == bytesBySender_.end() ? 0 : held->second;
}

}  // namespace ipc
