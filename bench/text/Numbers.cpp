#include "Numbers.h"

#include <cstdio>

namespace bench {

std::string Milliseconds(double ms) {
  char text[32];
  (void)std::snprintf(text, sizeof text, ms < 10 ? "%.2f ms" : "%.0f ms", ms);
  return text;
}

std::string OneDecimal(double value) {
  char text[32];
  (void)std::snprintf(text, sizeof text, "%.1f", value);
  return text;
}

}  // namespace bench
