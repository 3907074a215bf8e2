#include "LogLineText.h"

#include <syslog.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "log/LogLine.h"

namespace {

constexpr int kMaxName = 64;

struct MaskPriority {
  unsigned int mask;
  int priority;
};
constexpr MaskPriority kPriorities[] = {
    {kLogError, LOG_ERR},
    {kLogMalformed, LOG_WARNING},
    {kLogUnusual, LOG_NOTICE},
    {kLogShutdown | kLogDetail | kLogInfo, LOG_INFO},
};

int PriorityOf(unsigned int mask) {
  for (const auto& [bits, priority] : kPriorities) {
    if ((mask & bits) != 0) return priority;
  }
  return LOG_DEBUG;
}

int NameWidth(std::string_view name) {
  return static_cast<int>(std::min<std::size_t>(name.size(), kMaxName));
}

// Appends the text after the `used` bytes that snprintf returned and leaves `reserve` bytes free. Replaces
// control characters in the whole line by "?".
std::size_t AppendText(LogLineBuffer& line, int used, std::string_view text, std::size_t reserve) {
  const std::size_t end = line.size() - reserve;
  const std::size_t start = std::min(static_cast<std::size_t>(std::max(used, 0)), end);
  const std::size_t length = start + std::min(text.size(), end - start);
  std::copy_n(text.data(), length - start, line.data() + start);
  const auto isControl = [](unsigned char c) { return c < ' ' || c == 0x7F; };
  std::replace_if(line.data(), line.data() + length, isControl, '?');
  return length;
}

}  // namespace

std::string_view StderrLine(LogLineBuffer& line, const timespec& time, unsigned int mask,
                            std::string_view processName, std::string_view text) {
  tm utc{};
  gmtime_r(&time.tv_sec, &utc);
  const int used = std::snprintf(line.data(), line.size(), "%04d-%02d-%02dT%02d:%02d:%02d.%03dZ %.*s[%d] %u ",
                                 utc.tm_year + 1900, utc.tm_mon + 1, utc.tm_mday, utc.tm_hour, utc.tm_min,
                                 utc.tm_sec, static_cast<int>(time.tv_nsec / 1000000), NameWidth(processName),
                                 processName.data(), static_cast<int>(getpid()), mask);
  const std::size_t length = AppendText(line, used, text, 1);
  line[length] = '\n';
  return {line.data(), length + 1};
}

std::string_view SyslogLine(LogLineBuffer& line, const timespec& time, unsigned int mask,
                            std::string_view processName, std::string_view text) {
  static constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                            "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  tm local{};
  localtime_r(&time.tv_sec, &local);
  const int used = std::snprintf(
      line.data(), line.size(), "<%d>%s %2d %02d:%02d:%02d %.*s[%d]: ", LOG_DAEMON | PriorityOf(mask),
      kMonths[local.tm_mon], local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec, NameWidth(processName),
      processName.data(), static_cast<int>(getpid()));
  return {line.data(), AppendText(line, used, text, 0)};
}
