#include "Progress.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace reader {

Progress::Progress(bool beside)
    : enabled_(isatty(STDERR_FILENO) != 0 && (beside || isatty(STDOUT_FILENO) == 0)) {}

Progress::~Progress() {
  if (shown_) (void)std::fputs("\r\x1B[K", stderr);
}

void Progress::Show(std::int64_t done, std::int64_t total) {
  constexpr std::chrono::milliseconds kPeriod(200);
  countdown_ = kCallsBetween;
  const auto now = std::chrono::steady_clock::now();
  if (!enabled_ || now < next_) return;
  next_ = now + kPeriod;
  shown_ = true;
  const double percent =
      100.0 * static_cast<double>(done) / static_cast<double>(std::max<std::int64_t>(total, 1));
  (void)std::fprintf(stderr, "\r%3.0f %% of %lld records\x1B[K", std::min(percent, 100.0),
                     static_cast<long long>(total));
}

}  // namespace reader
