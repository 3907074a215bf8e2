#pragma once

#include <string>
#include <vector>

#include "RunFiles.h"

namespace store {

// A store that FindOpenStore finds by its base path, from construction to destruction.
class OpenStore {
 public:
  explicit OpenStore(std::string basePath);
  virtual ~OpenStore();
  OpenStore(const OpenStore&) = delete;
  OpenStore& operator=(const OpenStore&) = delete;

  // Commits pending records and sets `run`. False if the store is not open or a record cannot be written.
  virtual bool Settle(CurrentRun& run) = 0;

  const std::string& BasePath() const { return basePath_; }

 private:
  std::string basePath_;
};

// Null if there is none.
OpenStore* FindOpenStore(const std::string& basePath);

}  // namespace store
