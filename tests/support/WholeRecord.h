#pragma once

#include <cstdint>
#include <cstring>
#include <optional>
#include <string>

#include "sharedmem/MetadataSharedMem.h"

// Copies the fields of the shared record as its header describes it for readers. Returns nullopt when a
// writer was at work.
inline std::optional<std::string> ReadWhole(const unsigned char* record) {
  constexpr std::size_t kFields = MetadataSharedMem::kChangeCounterOffset;
  const auto* counter = reinterpret_cast<const std::uint32_t*>(record + kFields);
  std::string copy(kFields, '\0');
  const std::uint32_t before = __atomic_load_n(counter, __ATOMIC_ACQUIRE);
  std::memcpy(copy.data(), record, kFields);
  __atomic_thread_fence(__ATOMIC_ACQUIRE);
  const std::uint32_t after = __atomic_load_n(counter, __ATOMIC_RELAXED);
  unsigned char bytes[sizeof before];
  std::memcpy(bytes, &before, sizeof before);
  if (before != after || (bytes[3] & 1) != 0) return {};
  return copy;
}
