#pragma once

#include <array>
#include <cstdint>

#include "log/LogClient.h"

// Bounds what one statement writes to the log: kBurst lines at once, then kPerSecond, so that
// a peer that causes a line with each message does not fill the log.
class LogFlood {
 public:
  static constexpr double kBurst = 2000;
  static constexpr double kPerSecond = 10;

  // Whether the statement may write one more line.
  bool Admits(const LogStatement& statement);

 private:
  struct Row {
    LogStatement statement;
    double left = kBurst;
    std::int64_t atMs = 0;
  };

  Row& RowOf(const LogStatement& statement);

  std::array<Row, 256> rows_;
  Row others_;  // for all statements that find no row free
};
