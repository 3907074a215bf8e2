#pragma once

#include <poll.h>

#include <chrono>

// Tries until `condition` holds. Returns false when the time is over.
template <typename Condition>
bool Eventually(Condition condition, std::chrono::milliseconds within = std::chrono::seconds(20)) {
  const auto end = std::chrono::steady_clock::now() + within;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    (void)poll(nullptr, 0, 1);
  }
  return true;
}
