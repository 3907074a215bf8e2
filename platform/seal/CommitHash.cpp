#include "seal/CommitHash.h"

#include <algorithm>

#include "BigEndian64.h"

namespace seal {
namespace {

constexpr unsigned char kSealText[] = {'M', 'M', 'D', 'B', 's', 'e', 'a', 'l'};

enum ValueType : unsigned char { kNull = 0, kInteger = 1, kText = 2 };
constexpr int kTypeBits = 2;
constexpr std::size_t kLongestNumber = 10;

// Maps 0, -1, 1, -2 ... to 0, 1, 2, 3 ..., so that small numbers of either sign are short.
std::uint64_t ZigZag(std::int64_t value) {
  const auto bits = static_cast<std::uint64_t>(value);
  return value < 0 ? ~(bits << 1) : bits << 1;
}

}  // namespace

CommitHash::CommitHash(const Hash& previous, const Seal& seal) : state_(Label::kCommit) {
  std::array<unsigned char, 32 + 5 * 8 + 4> head;
  unsigned char* p = std::copy(previous.begin(), previous.end(), head.begin());
  for (const std::int64_t field :
       {seal.place.number, seal.firstSeq, seal.lastSeq, seal.lastTick, seal.epoch}) {
    PutU64(p, static_cast<std::uint64_t>(field));
    p += 8;
  }
  PutU32(p, static_cast<std::uint32_t>(seal.note.size()));
  state_.Add(head);
  state_.Add(seal.note);
}

void CommitHash::BeginRow(std::string_view table, std::size_t columns) {
  PutNumber(0, 0, table.size());
  PutBytes(table);
  PutNumber(0, 0, columns);
}

void CommitHash::Add(std::int64_t value) {
  PutNumber(kInteger, kTypeBits, ZigZag(value));
}

void CommitHash::Add(std::string_view text) {
  PutNumber(kText, kTypeBits, text.size());
  PutBytes(text);
}

void CommitHash::AddNull() {
  PutNumber(kNull, kTypeBits, 0);
}

Hash CommitHash::End() {
  Flush();
  return state_.End();
}

// Seven bits a byte, lowest first; the high bit means that more follow. `first` takes the lowest `bits` of
// the first byte, and the number starts above it. Uses 32 bits where they suffice: 64 are slow on the target.
void CommitHash::PutNumber(unsigned char first, int bits, std::uint64_t number) {
  if (buffer_.size() - used_ < kLongestNumber) Flush();
  unsigned char* p = buffer_.data() + used_;
  *p = static_cast<unsigned char>((number << bits & 0x7F) | first);
  std::uint64_t left = number >> (7 - bits);
  const auto put = [&p](auto group) {
    *p |= 0x80;
    *++p = static_cast<unsigned char>(group & 0x7F);
  };
  for (; left > 0xFFFFFFFF; left >>= 7) put(left);
  for (auto low = static_cast<std::uint32_t>(left); low != 0; low >>= 7) put(low);
  used_ = static_cast<std::size_t>(p + 1 - buffer_.data());
}

void CommitHash::PutBytes(std::string_view text) {
  if (text.size() > buffer_.size() - used_) Flush();
  if (text.size() > buffer_.size()) {
    state_.Add({reinterpret_cast<const unsigned char*>(text.data()), text.size()});
  } else {
    (void)std::copy(text.begin(), text.end(), buffer_.begin() + static_cast<std::ptrdiff_t>(used_));
    used_ += text.size();
  }
}

void CommitHash::Flush() {
  state_.Add(std::span(buffer_).first(used_));
  used_ = 0;
}

std::array<unsigned char, 40> SignedBytes(const Hash& hash) {
  std::array<unsigned char, 40> bytes;
  std::copy(hash.begin(), hash.end(), std::copy(std::begin(kSealText), std::end(kSealText), bytes.begin()));
  return bytes;
}

}  // namespace seal
