#include "OpenStores.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace store {
namespace {

std::vector<OpenStore*>& Stores() {
  static std::vector<OpenStore*> stores;
  return stores;
}

}  // namespace

OpenStore::OpenStore(std::string basePath) : basePath_(std::move(basePath)) {
  Stores().push_back(this);
}

OpenStore::~OpenStore() {
  std::erase(Stores(), this);
}

OpenStore* FindOpenStore(const std::string& basePath) {
  const auto found = std::find_if(Stores().begin(), Stores().end(), [&basePath](const OpenStore* open) {
    return open->BasePath() == basePath;
  });
  return found == Stores().end() ? nullptr : *found;
}

}  // namespace store
