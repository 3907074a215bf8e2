#include "PrivateCopy.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <vector>

namespace reader {

namespace fs = std::filesystem;

namespace {

constexpr const char* kSuffixes[] = {"", "-wal"};

// A recording and its WAL take up to 256 MB each; a WAL pinned by a reader takes somewhat more.
constexpr std::uintmax_t kMostBytes = std::uintmax_t{1} << 30;

// Sizes and modification times of a recording and its WAL.
std::vector<std::intmax_t> StateOf(const std::string& recording) {
  std::vector<std::intmax_t> state;
  for (const char* suffix : kSuffixes) {
    std::error_code failure;
    const std::string path = recording + suffix;
    state.push_back(static_cast<std::intmax_t>(fs::file_size(path, failure)));
    state.push_back(fs::last_write_time(path, failure).time_since_epoch().count());
  }
  return state;
}

bool CopyAll(const std::string& recording, const std::string& to, std::string& error) {
  for (const char* suffix : kSuffixes) {
    std::error_code failure;
    const std::string from = recording + suffix;
    (void)fs::remove(to + suffix, failure);
    if (!fs::exists(from, failure) && *suffix != '\0') continue;
    if (const auto bytes = fs::file_size(from, failure); !failure && bytes > kMostBytes) {
      error = from + " has " + std::to_string(bytes) + " bytes, more than any recording";
      return false;
    }
    if (fs::copy_file(from, to + suffix, failure)) continue;
    error = "cannot copy " + from + ": " + failure.message();
    return false;
  }
  return true;
}

}  // namespace

bool PrivateCopy::Make(const std::string& recording, std::string& error) {
  constexpr int kTries = 5;
  std::error_code failure;
  const fs::path temporary = fs::temp_directory_path(failure);
  std::string name = ((failure ? fs::path("/tmp") : temporary) / "metadata-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) {
    error = "cannot create " + name + ": " + std::strerror(errno);
    return false;
  }
  directory_ = name;
  path_ = name + "/copy.db";
  for (int i = 0; i < kTries; ++i) {
    const auto before = StateOf(recording);
    if (!CopyAll(recording, path_, error)) return false;
    if (StateOf(recording) == before) return true;
  }
  error = "it is being written to all the time";
  return false;
}

void PrivateCopy::Remove() {
  std::error_code ignored;
  if (!directory_.empty()) fs::remove_all(directory_, ignored);
  directory_.clear();
}

}  // namespace reader
