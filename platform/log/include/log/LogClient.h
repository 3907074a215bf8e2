#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

class LogFlood;

// A statement of the sources that writes a line. A statement that several callers share is told apart by its
// subject, the literal that its text begins with. Texts are compared by their addresses.
struct LogStatement {
  const char* file = nullptr;
  unsigned int line = 0;
  const char* subject = nullptr;

  bool operator==(const LogStatement& other) const = default;
};

class LogSink;

// The process's one connection to the system log.
//
// Lines go to the system log socket when there is one, else to standard error; the environment
// variable LOG_TARGET ("syslog" or "stderr") decides instead where it is set. Writing never
// blocks: a line that the receiver cannot take at once is dropped and counted. The count is
// written as a line of its own when the receiver takes lines again, at most once a second.
//
// One thread. The first use ignores SIGPIPE for the process, so that a log reader that goes away
// does not end it.
class LogClient {
 public:
  static LogClient& Instance();

  ~LogClient() = delete;  // lives to the end: destructors of globals may still log
  LogClient(const LogClient&) = delete;
  LogClient& operator=(const LogClient&) = delete;

  // The level is a mask of bits; a line of mask M is written when the level contains M.
  // It starts as 7 (errors, malformed input, unusual modes).
  unsigned int Level() const { return level_; }
  void Level(unsigned int level) { level_ = level; }

  // The name that stands on every line; starts empty, the program's file name stands there then.
  const std::string& ProcessName() const { return processName_; }
  void ProcessName(const std::string& name) { processName_ = name; }

  // Whether a statement is to write a line of that mask: the level contains the mask and, for lines of
  // trouble (masks 1, 2, 4), which others may cause at will, the statement has not written too many. Lines
  // beyond 2,000 at once and 10 a second are dropped and counted.
  bool Admits(unsigned int mask, const LogStatement& statement);

  // Lines dropped since the process started.
  std::uint64_t DroppedLines() const { return droppedLines_; }

  // Writes one line without a test of the level. Control characters become "?", so that a text
  // never makes a second line; a text longer than a line is cut off. Leaves errno as it was. Used
  // by SysLogMsg.
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
