#pragma once

#include <span>

// A hostile peer.
struct Hostile {
  const char* what;
  void (*behave)();  // one round; a separate process repeats it until the time is over
};

std::span<const Hostile> Hostiles();
