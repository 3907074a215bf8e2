#include "system/KvGetenv.h"

#include <cstdlib>

const char* KvGetenv(const char* name) {
  return std::getenv(name);
}

const char* KvGetenvText(const char* name) {
  const char* text = KvGetenv(name);
  return text == nullptr || *text == '\0' ? nullptr : text;
}
