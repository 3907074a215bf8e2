#pragma once

#include <type_traits>

#include "log/LogClient.h"
#include "log/SysLogMsg.h"

// Bits of the log level, as used by the whole system.
enum e_LogMask : unsigned int {
  kLogError = 1,      // an operation failed
  kLogMalformed = 2,  // malformed input and soft errors
  kLogUnusual = 4,    // unusual modes
  kLogShutdown = 16,  // shutdown during start-up, live-streaming states
  kLogDetail = 32,    // ignored servers, detail values
  kLogTrace = 64,     // entry of handlers and operations
  kLogInfo = 128,     // progress
};

// A mask and the source line of the call.
struct LogAt {
  // NOLINTNEXTLINE(google-explicit-constructor): implicit, so that it takes the caller's line
  LogAt(e_LogMask m, const char* f = __builtin_FILE(), unsigned int l = __builtin_LINE())
      : mask(m), file(f), line(l) {}
  e_LogMask mask;
  const char* file;
  unsigned int line;
};

// A number that is logged in hexadecimal.
struct LogHex {
  unsigned int value;
};
inline SysLogMsg& operator<<(SysLogMsg& line, LogHex hex) {
  return line.Hex(hex.value);
}

// Writes lines of the form "NAME:LINE TEXT". NAME is the system's name for a group of sources, not always the
// file's name. Formats nothing unless LogClient::Admits the line.
//
//   constexpr LogSource log{"MetadataMgr"};
//   log(kLogInfo, "Exiting ", status);
class LogSource {
 public:
  explicit constexpr LogSource(const char* name) : name_(name) {}

  template <typename... Parts>
  void operator()(LogAt at, const Parts&... parts) const {
    LogClient& client = LogClient::Instance();
    if ((client.Level() & at.mask) == 0 || !client.Admits(at.mask, {at.file, at.line, SubjectOf(parts...)}))
      return;
    SysLogMsg line = LogMsg::Log(at.mask, client.ProcessName());
    line << name_ << ":" << at.line << " ";
    (void)(line << ... << parts);
  }

 private:
  template <typename First, typename... Rest>
  static const char* SubjectOf(const First& first, const Rest&... /*rest*/) {
    if constexpr (std::is_convertible_v<First, const char*>) return first;
    return nullptr;
  }

  const char* name_;
};
