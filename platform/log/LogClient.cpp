#include "log/LogClient.h"

#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <ctime>

#include "LogFlood.h"
#include "LogLineText.h"
#include "LogSink.h"
#include "log/LogLine.h"
#include "os/MonotonicClock.h"

namespace {

constexpr const char* kSyslogSocket = "/dev/log";
constexpr std::int64_t kReportEveryMs = 1000;  // between two lines that report dropped lines

}  // namespace

LogClient& LogClient::Instance() {
  static LogClient& instance = *new LogClient;
  return instance;
}

LogClient::LogClient() : flood_(std::make_unique<LogFlood>()) {
  std::signal(SIGPIPE, SIG_IGN);
  const char* variable = std::getenv("LOG_TARGET");
  const std::string_view target = variable ? variable : "";
  if (target != "stderr") {
    sink_ = std::make_unique<LogSink>(kSyslogSocket);
    syslog_ = sink_->Connected() || target == "syslog";
  }
  if (!syslog_) sink_ = std::make_unique<LogSink>(STDERR_FILENO);
}

bool LogClient::Admits(unsigned int mask, const LogStatement& statement) {
  if ((level_ & mask) == 0) return false;
  constexpr unsigned int kTrouble = kLogError | kLogMalformed | kLogUnusual;
  if ((mask & kTrouble) == 0 || flood_->Admits(statement)) return true;
  ++droppedLines_;
  ++unreportedLines_;
  return false;
}

void LogClient::Write(unsigned int mask, std::string_view processName, std::string_view text) {
  const int savedErrno = errno;
  const bool due = unreportedLines_ != 0 && os::MonotonicMs() >= nextReportMs_;
  if ((due && !SayDropped()) || !Send(mask, processName, text)) {
    ++droppedLines_;
    ++unreportedLines_;
  }
  errno = savedErrno;
}

bool LogClient::Send(unsigned int mask, std::string_view processName, std::string_view text) {
  if (processName.empty()) processName = program_invocation_short_name;
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  LogLineBuffer line;
  return sink_->Write(syslog_ ? SyslogLine(line, now, mask, processName, text)
                              : StderrLine(line, now, mask, processName, text));
}

bool LogClient::SayDropped() {
  std::array<char, 64> text;
  const int size = std::snprintf(text.data(), text.size(), "LogClient:%d %llu log lines dropped", __LINE__,
                                 static_cast<unsigned long long>(unreportedLines_));
  if (!Send(kLogError, processName_, {text.data(), static_cast<std::size_t>(size)})) return false;
  unreportedLines_ = 0;
  nextReportMs_ = os::MonotonicMs() + kReportEveryMs;
  return true;
}
