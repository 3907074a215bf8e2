#pragma once

#include <cstdint>

#include "system/BigEndian.h"

namespace seal {

inline void PutU64(unsigned char* p, std::uint64_t value) {
  PutU32(p, static_cast<std::uint32_t>(value >> 32));
  PutU32(p + 4, static_cast<std::uint32_t>(value));
}

inline std::uint64_t GetU64(const unsigned char* p) {
  return (std::uint64_t{GetU32(p)} << 32) | GetU32(p + 4);
}

}  // namespace seal
