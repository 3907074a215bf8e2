#include "items/MicStatusResponse.h"

#include <algorithm>

unsigned int MicStatusResponse::Size() const {
  constexpr unsigned int kEntryBytes = 6;
  return 2 + static_cast<unsigned int>(count_) * kEntryBytes + 4;
}

unsigned char* MicStatusResponse::Encode(unsigned char* p) const {
  p = field::Encode(static_cast<std::uint16_t>(count_), p);
  for (const Entry& entry : *this) p = field::Encode(entry, p);
  return field::Encode(tick, p);
}

unsigned char* MicStatusResponse::Decode(unsigned char* p) {
  count_ = std::min<std::size_t>(GetU16(p), kMaxEntries);
  p += 2;
  for (std::size_t i = 0; i < count_; ++i) p += field::Decode(entries_[i], p) - p;
  p += field::Decode(tick, p) - p;
  return p;
}

void MicStatusResponse::Add(const Entry& entry) {
  if (count_ < kMaxEntries) entries_[count_++] = entry;
}
