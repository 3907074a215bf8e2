#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

class LogFlood;

// A source line that logs. The subject, the literal at the start of the text, tells the callers of a shared
// statement apart. Compares strings by their addresses.
struct LogStatement {
  const char* file = nullptr;
  unsigned int line = 0;
  const char* subject = nullptr;

  bool operator==(const LogStatement& other) const = default;
};

class LogSink;

// The process's one connection to the system log.
//
// Lines go to the system log socket when it exists, else to standard error. The environment variable
// LOG_TARGET ("syslog" or "stderr") overrides this. Writing never blocks: drops and counts a line that the
// receiver does not take at once. Logs the count when the receiver takes lines again, at most once a second.
//
// For one thread. The first use makes the process ignore SIGPIPE, so that a closed log pipe does not end it.
class LogClient {
 public:
  static LogClient& Instance();

  ~LogClient() = delete;  // lives to the end: destructors of globals may still log
  LogClient(const LogClient&) = delete;
  LogClient& operator=(const LogClient&) = delete;

  // The level is a bit mask; a line of mask M is written when the level contains M. Initially 7: errors,
  // malformed input, unusual modes.
  unsigned int Level() const { return level_; }
  void Level(unsigned int level) { level_ = level; }

  // The process name on every line. Initially empty: lines then carry the program's file name.
  const std::string& ProcessName() const { return processName_; }
  void ProcessName(const std::string& name) { processName_ = name; }

  // Whether a statement may write a line of that mask. The level must contain the mask. Peers can cause lines
  // of masks 1, 2 and 4 at will, so a statement may write 2,000 of them at once, then 10 a second; drops and
  // counts more.
  bool Admits(unsigned int mask, const LogStatement& statement);

  // Lines dropped since the process started.
  std::uint64_t DroppedLines() const { return droppedLines_; }

  // Writes one line without checking the level. Replaces control characters by "?", so that a text stays one
  // line; cuts a text that is too long. Keeps errno. Used by SysLogMsg.
  void Write(unsigned int mask, std::string_view processName, std::string_view text);

 private:
  LogClient();

  bool Send(unsigned int mask, std::string_view processName, std::string_view text);
  bool SayDropped();

  unsigned int level_ = 7;
  std::string processName_;
  std::uint64_t droppedLines_ = 0;
  std::uint64_t unreportedLines_ = 0;
  std::int64_t nextReportMs_ = 0;
  bool syslog_ = false;
  std::unique_ptr<LogSink> sink_;
  std::unique_ptr<LogFlood> flood_;
};
