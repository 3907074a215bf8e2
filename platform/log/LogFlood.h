#pragma once

#include <array>
#include <cstdint>

#include "log/LogClient.h"

// Limits the log lines of each statement to kBurst at once, then kPerSecond. A peer whose every message
// causes a line cannot fill the log.
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
  Row others_;  // shared by all statements that got no row
};
