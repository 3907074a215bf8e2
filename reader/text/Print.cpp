#include "Print.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

namespace reader {

void Print(std::string& out, const char* format, ...) {
  char line[1200];  // NOLINTNEXTLINE(cppcoreguidelines-init-variables): va_start does
  va_list arguments;
  va_start(arguments, format);
  const int size = std::vsnprintf(line, sizeof line, format, arguments);
  va_end(arguments);
  if (size > 0) out.append(line, std::min(static_cast<std::size_t>(size), sizeof line - 1));
}

std::string DurationText(std::int64_t ms) {
  std::string text;
  const auto seconds = static_cast<long long>(ms / 1000);
  if (ms < 1000) {
    Print(text, "%lld ms", static_cast<long long>(ms));
  } else if (seconds < 60) {
    Print(text, "%.1f s", static_cast<double>(ms) / 1000);
  } else if (seconds < 3600) {
    Print(text, "%lld min %02lld s", seconds / 60, seconds % 60);
  } else {
    Print(text, "%lld h %02lld min", seconds / 3600, seconds / 60 % 60);
  }
  return text;
}

}  // namespace reader
