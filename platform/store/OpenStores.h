#pragma once

#include <cstdint>
#include <string>

namespace store {

// What an open store has recorded in its run so far.
struct CurrentRun {
  std::uint32_t firstFile = 0;  // numbers; all between them belong to the run
  std::uint32_t lastFile = 0;
  std::int64_t now = 0;  // arrival tick
};

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
