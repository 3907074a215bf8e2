#include "log/SysLogMsg.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "log/LogClient.h"

namespace {

constexpr std::size_t kMaxDigits = 20;  // 64 bits in decimal, or 63 and a sign

template <typename Number>
void AppendNumber(SysLogMsg& line, Number value, int base = 10) {
  std::array<char, kMaxDigits> digits;
  const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), value, base);
  line << std::string_view(digits.data(), static_cast<std::size_t>(end - digits.data()));
}

}  // namespace

SysLogMsg::SysLogMsg(unsigned int mask, const std::string& processName)
    : mask_(mask), processName_(processName) {}

SysLogMsg::~SysLogMsg() {
  LogClient::Instance().Write(mask_, processName_, std::string_view(text_.data(), length_));
}

SysLogMsg& SysLogMsg::operator<<(std::string_view text) {
  const std::size_t size = std::min(text.size(), text_.size() - length_);
  if (size == 0) return *this;
  std::memcpy(text_.data() + length_, text.data(), size);
  length_ += size;
  return *this;
}

SysLogMsg& SysLogMsg::operator<<(bool value) {
  return *this << (value ? "1" : "0");
}

SysLogMsg& SysLogMsg::operator<<(long long value) {
  AppendNumber(*this, value);
  return *this;
}

SysLogMsg& SysLogMsg::operator<<(unsigned long long value) {
  AppendNumber(*this, value);
  return *this;
}

SysLogMsg& SysLogMsg::Hex(unsigned int value) {
  AppendNumber(*this, value, 16);
  return *this;
}
