#include "system/KvGetenv.h"

#include <cstdlib>

const char* KvGetenv(const char* name) {
  return std::getenv(name);
}
