#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// A packet is a 32-bit big-endian message type, then the payload; SOCK_SEQPACKET keeps packet boundaries. The
// side that connects sends the hello first.
namespace ipc::wire {

constexpr std::size_t kHeaderSize = 4;

// Hello: this type, the version in one byte, then the sender's name without NUL.
constexpr std::uint32_t kHelloType = 0x4C494E58;  // "LINX"
constexpr unsigned char kVersion = 1;
constexpr std::size_t kMaxName = 32;

bool ValidName(std::string_view name);

}  // namespace ipc::wire
