#pragma once

#include <chrono>
#include <string>

namespace bench {

// So fast that every line is due at once.
constexpr double kMaxSpeed = 1e6;

struct RunOptions {
  double speed = 1;                  // 2: the drive runs twice as fast
  bool attach = false;               // the user starts MetadataMgr
  std::string program;               // path of MetadataMgr; empty: beside this program
  double startDeadlineSeconds = 30;  // from the start, or that of an attached MetadataMgr, to full run
  double stopDeadlineSeconds = 5;    // for each process to answer the shut-down
};

inline std::chrono::milliseconds FromSeconds(double seconds) {
  return std::chrono::milliseconds(static_cast<std::int64_t>(seconds * 1000));
}

}  // namespace bench
