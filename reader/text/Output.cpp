#include "Output.h"

#include <unistd.h>

#include <cerrno>

#include "Encode.h"

namespace reader {

Output::Output(Kind kind) : Output(STDOUT_FILENO, kind) {}

Output::Output(int fd, Kind kind)
    : fd_(fd), printable_(kind == Kind::kText || (kind == Kind::kData && isatty(fd) != 0)) {
  text_.reserve(kPieceBytes + kPieceBytes / 4);
}

bool Output::Flush() {
  if (beforeWriting_ && !text_.empty()) beforeWriting_();
  if (printable_) text_ = PrintableLines(text_);
  std::size_t written = 0;
  while (Good() && written < text_.size()) {
    const ssize_t n = write(fd_, text_.data() + written, text_.size() - written);
    if (n >= 0) {
      written += static_cast<std::size_t>(n);
    } else if (errno != EINTR) {
      error_ = errno;
    }
  }
  text_.clear();
  return Good();
}

}  // namespace reader
