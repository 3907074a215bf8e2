#pragma once

#include <span>

// A peer without manners.
struct Hostile {
  const char* what;
  void (*behave)();  // once; it is called again and again until the time is over, in a process of its own
};

std::span<const Hostile> Hostiles();
