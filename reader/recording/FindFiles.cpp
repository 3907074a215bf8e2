#include "FindFiles.h"

#include <algorithm>
#include <filesystem>

#include "FileNames.h"

namespace reader {

namespace fs = std::filesystem;

namespace {

void FindIn(const std::string& directory, std::vector<std::string>& files, Messages& messages) {
  std::vector<std::string> found;
  std::error_code failure;
  for (const fs::directory_entry& entry : fs::directory_iterator(directory, failure)) {
    if (BaseAndNumber(entry.path().string()).second != 0) found.push_back(entry.path().string());
  }
  if (failure) {
    messages.Problem(directory + ": " + failure.message());
  } else if (found.empty()) {
    messages.Problem(directory + ": no recording in it");
  }
  files.insert(files.end(), found.begin(), found.end());
}

}  // namespace

std::pair<std::string, std::uint64_t> BaseAndNumber(const std::string& path) {
  const auto name = store::ParseRecordingName(path);
  if (!name) return {path, 0};
  return {std::string(name->base), name->number};
}

std::vector<std::string> FindFiles(const std::vector<std::string>& paths, Messages& messages) {
  std::vector<std::string> files;
  for (const std::string& path : paths) {
    std::error_code failure;
    if (fs::is_directory(path, failure)) {
      FindIn(path, files, messages);
    } else if (fs::exists(path, failure)) {
      files.push_back(path);
    } else {
      messages.Problem(path + ": " + (failure ? failure.message() : "no such file"));
    }
  }
  std::stable_sort(files.begin(), files.end(), [](const std::string& a, const std::string& b) {
    return BaseAndNumber(a) < BaseAndNumber(b);
  });
  files.erase(std::unique(files.begin(), files.end()), files.end());
  return files;
}

}  // namespace reader
