#include "store/MetadataReader.h"

bool MetadataReader::ReadToNewFile(const std::string&, const std::string&, unsigned int, unsigned int,
                                   Watchdog*) {
  return false;
}
