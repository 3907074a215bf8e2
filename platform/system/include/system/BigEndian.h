#pragma once

#include <cstdint>

// Big-endian fields in byte buffers, by shifts: the same on every host, at any alignment. The caller checks
// the bounds.

inline void PutU16(unsigned char* p, std::uint16_t value) {
  p[0] = static_cast<unsigned char>(value >> 8);
  p[1] = static_cast<unsigned char>(value);
}

inline void PutU32(unsigned char* p, std::uint32_t value) {
  p[0] = static_cast<unsigned char>(value >> 24);
  p[1] = static_cast<unsigned char>(value >> 16);
  p[2] = static_cast<unsigned char>(value >> 8);
  p[3] = static_cast<unsigned char>(value);
}

inline std::uint16_t GetU16(const unsigned char* p) {
  return static_cast<std::uint16_t>((unsigned{p[0]} << 8) | p[1]);
}

inline std::uint32_t GetU32(const unsigned char* p) {
  return (std::uint32_t{p[0]} << 24) | (std::uint32_t{p[1]} << 16) | (std::uint32_t{p[2]} << 8) | p[3];
}
