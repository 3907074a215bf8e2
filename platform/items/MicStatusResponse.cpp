#include "items/MicStatusResponse.h"

#include <algorithm>

namespace {

constexpr unsigned int kEntryBytes = 6;

}  // namespace

unsigned int MicStatusResponse::Size() const {
  return 2 + static_cast<unsigned int>(count_) * kEntryBytes + 4;
}

unsigned char* MicStatusResponse::Encode(unsigned char* p) const {
  p = field::Encode(static_cast<std::uint16_t>(count_), p);
  for (const Entry& entry : *this) p = field::Encode(entry, p);
  return field::Encode(tick, p);
}

unsigned char* MicStatusResponse::Decode(unsigned char* p) {
  const std::size_t told = GetU16(p);
  count_ = std::min(told, kMaxEntries);
  p += 2;
  const unsigned char* entry = p;
  for (std::size_t i = 0; i < count_; ++i) entry = field::Decode(entries_[i], entry);
  p += field::SkippedBytes(told * kEntryBytes);
  p += field::Decode(tick, p) - p;
  return p;
}

void MicStatusResponse::Add(const Entry& entry) {
  if (count_ < kMaxEntries) entries_[count_++] = entry;
}
