#include "seal/RowHash.h"

namespace seal {
namespace {

enum ValueType : unsigned char { kNull = 0, kInteger = 1, kText = 2 };

// Small numbers of either sign are short: 0, -1, 1, -2 ... become 0, 1, 2, 3 ...
std::uint64_t ZigZag(std::int64_t value) {
  const auto bits = static_cast<std::uint64_t>(value);
  return value < 0 ? ~(bits << 1) : bits << 1;
}

}  // namespace

RowHash::RowHash(std::string_view table, std::size_t columns) : state_(Label::kRow) {
  PutText(table);
  PutNumber(columns);
}

void RowHash::Add(std::int64_t value) {
  PutByte(kInteger);
  PutNumber(ZigZag(value));
}

void RowHash::Add(std::string_view text) {
  PutByte(kText);
  PutText(text);
}

void RowHash::AddNull() {
  PutByte(kNull);
}

Hash RowHash::End() {
  Flush();
  return state_.End();
}

void RowHash::PutByte(unsigned char byte) {
  if (used_ == buffer_.size()) Flush();
  buffer_[used_++] = byte;
}

// Seven bits a byte, the lowest first; the high bit says that more follow.
void RowHash::PutNumber(std::uint64_t number) {
  for (; number >= 0x80; number >>= 7) PutByte(static_cast<unsigned char>(number | 0x80));
  PutByte(static_cast<unsigned char>(number));
}

void RowHash::PutText(std::string_view text) {
  PutNumber(text.size());
  if (text.size() > buffer_.size() - used_) Flush();
  if (text.size() > buffer_.size()) {
    state_.Add({reinterpret_cast<const unsigned char*>(text.data()), text.size()});
  } else {
    for (const char c : text) buffer_[used_++] = static_cast<unsigned char>(c);
  }
}

void RowHash::Flush() {
  state_.Add(std::span(buffer_).first(used_));
  used_ = 0;
}

}  // namespace seal
