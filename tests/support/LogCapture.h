#pragma once

#include <string>
#include <string_view>

// Captures standard error of this process, with its log lines, while the object lives.
class LogCapture {
 public:
  LogCapture();
  ~LogCapture();
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  // The text captured so far.
  std::string Text() const;
  // The number of captured lines that contain `part`.
  int Lines(std::string_view part) const;

 private:
  int file_;
  int savedStderr_;
};
