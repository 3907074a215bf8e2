#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// A packet on a connection (SOCK_SEQPACKET keeps its bounds): the message type, 32 bits
// big-endian, then the payload. The first packet of the side that connects is the hello.
namespace ipc::wire {

constexpr std::size_t kHeaderSize = 4;

// Hello: this type, then the version as one byte, then the sender's name without NUL.
constexpr std::uint32_t kHelloType = 0x4C494E58;  // "LINX"
constexpr unsigned char kVersion = 1;
constexpr std::size_t kMaxName = 32;

bool ValidName(std::string_view name);

}  // namespace ipc::wire
