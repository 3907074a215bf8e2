#include "Wire.h"

#include <algorithm>

bool ipc::wire::ValidName(std::string_view name) {
  return !name.empty() && name.size() <= kMaxName && std::all_of(name.begin(), name.end(), [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '-';
  });
}
