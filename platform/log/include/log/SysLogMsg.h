#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

// One log line under construction; the destructor writes it. Cuts text that exceeds the fixed buffer.
class SysLogMsg {
 public:
  static constexpr std::size_t kMaxText = 512;

  SysLogMsg(unsigned int mask, const std::string& processName);
  ~SysLogMsg();
  SysLogMsg(const SysLogMsg&) = delete;
  SysLogMsg& operator=(const SysLogMsg&) = delete;

  SysLogMsg& operator<<(std::string_view text);
  SysLogMsg& operator<<(const char* text) { return *this << std::string_view(text ? text : "(null)"); }
  SysLogMsg& operator<<(const std::string& text) { return *this << std::string_view(text); }
  SysLogMsg& operator<<(bool value);  // "1" or "0"
  SysLogMsg& operator<<(int value) { return *this << static_cast<long long>(value); }
  SysLogMsg& operator<<(unsigned int value) { return *this << static_cast<unsigned long long>(value); }
  SysLogMsg& operator<<(long value) { return *this << static_cast<long long>(value); }
  SysLogMsg& operator<<(unsigned long value) { return *this << static_cast<unsigned long long>(value); }
  SysLogMsg& operator<<(long long value);
  SysLogMsg& operator<<(unsigned long long value);
  SysLogMsg& operator<<(const void* pointer) = delete;  // would become a bool

  // The value in hexadecimal, lower case, without prefix.
  SysLogMsg& Hex(unsigned int value);

 private:
  unsigned int mask_;
  const std::string& processName_;  // lives until the caller's full expression ends
  std::array<char, kMaxText> text_;
  std::size_t length_ = 0;
};

class LogMsg {
 public:
  // Starts a line. The caller has checked that the level contains `mask`.
  static SysLogMsg Log(unsigned int mask, const std::string& processName) { return {mask, processName}; }
};
