#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <unordered_map>
#include <vector>

namespace ipc {

// The messages that a receive accepts.
struct Filter {
  unsigned int type;          // 0: any
  const std::string& sender;  // empty: any
  bool selective;  // a selective wait leaves shutdown notices queued; other receives always take them

  bool Matches(unsigned int messageType, const std::string& from) const;
};

struct PendingMessage {
  unsigned int type = 0;
  std::string sender;
  std::vector<unsigned char> payload;

  // Approximate memory use.
  std::size_t Bytes() const { return payload.size() + sizeof(PendingMessage) + 64; }
};

// Messages that were read but not yet delivered, in order of arrival.
class PendingQueue {
 public:
  bool Empty() const { return messages_.empty(); }
  void Add(PendingMessage message);

  bool Has(const Filter& filter) const;
  // Moves the first message that matches into `taken`.
  bool Take(const Filter& filter, PendingMessage& taken);

  bool HasShutdown() const { return shutdowns_ != 0; }

  // Bytes of one sender's messages, and of all messages.
  std::size_t BytesFrom(const std::string& sender) const;
  std::size_t Bytes() const { return bytes_; }

 private:
  std::deque<PendingMessage> messages_;
  std::unordered_map<std::string, std::size_t> bytesBySender_;
  std::size_t bytes_ = 0;
  std::size_t shutdowns_ = 0;
};

}  // namespace ipc
