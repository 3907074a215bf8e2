#pragma once

#include <chrono>
#include <string>

namespace bench {

struct RunOptions {
  double speed = 1;                  // how many times faster than its times the drive runs
  bool attach = false;               // MetadataMgr is started by hand
  std::string program;               // MetadataMgr's path; empty: beside this program
  double startDeadlineSeconds = 30;  // from the start, or that of the attached MetadataMgr, to full run
  double stopDeadlineSeconds = 5;    // for each process to answer the shut-down
};

inline std::chrono::milliseconds FromSeconds(double seconds) {
  return std::chrono::milliseconds(static_cast<std::int64_t>(seconds * 1000));
}

}  // namespace bench
