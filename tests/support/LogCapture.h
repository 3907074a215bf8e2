#pragma once

#include <string>
#include <string_view>

// Takes what the process writes to standard error, its log lines among it, as long as it lives.
class LogCapture {
 public:
  LogCapture();
  ~LogCapture();
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  // All that was written so far.
  std::string Text() const;
  // Lines so far that contain `part`.
  int Lines(std::string_view part) const;

 private:
  int file_;
  int savedStderr_;
};
