#include "support/LogCapture.h"

#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <sstream>

namespace {

// Set before the first log line: the log client chooses its target only once.
[[maybe_unused]] const int kToStderr = setenv("LOG_TARGET", "stderr", 1);

}  // namespace

LogCapture::LogCapture() : file_(memfd_create("stderr", MFD_CLOEXEC)), savedStderr_(dup(STDERR_FILENO)) {
  if (file_ < 0 || savedStderr_ < 0 || dup2(file_, STDERR_FILENO) < 0) std::abort();
}

LogCapture::~LogCapture() {
  dup2(savedStderr_, STDERR_FILENO);
  close(savedStderr_);
  close(file_);
}

std::string LogCapture::Text() const {
  std::string text;
  std::array<char, 4096> part;
  ssize_t size = 0;
  while ((size = pread(file_, part.data(), part.size(), static_cast<off_t>(text.size()))) > 0) {
    text.append(part.data(), static_cast<std::size_t>(size));
  }
  return text;
}

int LogCapture::Lines(std::string_view part) const {
  std::istringstream text(Text());
  int count = 0;
  for (std::string line; std::getline(text, line);) {
    if (line.find(part) != std::string::npos) ++count;
  }
  return count;
}
