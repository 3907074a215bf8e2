#pragma once

#include <string>
#include <vector>

#include "RunFiles.h"

namespace store {

// A store that can be found by its base path, as long as it lives.
class OpenStore {
 public:
  explicit OpenStore(std::string basePath);
  virtual ~OpenStore();
  OpenStore(const OpenStore&) = delete;
  OpenStore& operator=(const OpenStore&) = delete;

  // Commits what is pending. False when it is not open, or something remains that cannot be written.
  virtual bool Settle(CurrentRun& run) = 0;

  const std::string& BasePath() const { return basePath_; }

 private:
  std::string basePath_;
};

// Null when there is none.
OpenStore* FindOpenStore(const std::string& basePath);

}  // namespace store
