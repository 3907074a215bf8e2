#pragma once

#include <vector>

#include "items/Enumerations.h"
#include "items/RecordItem.h"

// Wireless microphones that are present and active: a 16-bit count, the entries, the tick.
class MicStatusResponse : public Item {
 public:
  static constexpr std::size_t kMaxEntries = 32;  // ignores further entries

  struct Entry {
    e_MicrophonePosition mic{};
    bool present = false;
    bool active = false;

    static constexpr auto Fields() { return std::make_tuple(&Entry::mic, &Entry::present, &Entry::active); }
  };

  unsigned int Size() const override;
  unsigned char* Encode(unsigned char* p) const override;
  unsigned char* Decode(unsigned char* p) override;
  std::unique_ptr<Item> New() const override { return std::make_unique<MicStatusResponse>(); }

  // Ignores entries beyond kMaxEntries.
  void Add(const Entry& entry);
  const Entry* begin() const { return entries_.data(); }
  const Entry* end() const { return entries_.data() + count_; }

  std::uint32_t tick = 0;

 private:
  std::array<Entry, kMaxEntries> entries_{};
  std::size_t count_ = 0;
};
