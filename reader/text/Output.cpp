#include "Output.h"

#include <unistd.h>

#include <cerrno>

Output::Output() : Output(STDOUT_FILENO) {}

Output::Output(int fd) : fd_(fd) {
  text_.reserve(kPieceBytes + kPieceBytes / 4);
}

bool Output::Flush() {
  if (beforeWriting_ && !text_.empty()) beforeWriting_();
  std::size_t written = 0;
  while (good_ && written < text_.size()) {
    const ssize_t n = write(fd_, text_.data() + written, text_.size() - written);
    if (n >= 0) {
      written += static_cast<std::size_t>(n);
    } else if (errno != EINTR) {
      good_ = false;
    }
  }
  text_.clear();
  return good_;
}
