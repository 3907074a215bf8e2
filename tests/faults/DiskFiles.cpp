#include "DiskFiles.h"

#include <filesystem>
#include <vector>

#include "Usage.h"

namespace fs = std::filesystem;

DiskState ReadFiles(const TempDir& dir) {
  DiskState state;
  for (const auto& entry : fs::directory_iterator(dir.Path(""))) {
    const std::string name = entry.path().filename().string();
    if (!name.ends_with("-shm")) state[name] = dir.Read(name);
  }
  return state;
}

DiskState RunWithoutClose(const std::string& keyFile) {
  const TempDir dir;
  StoreOptions options;
  options.keyFile = keyFile;
  Usage usage(dir.Path("metadata"), options);
  (void)usage.Open();
  for (int i = 0; i < 10; ++i) {
    usage.Bookmark();
    usage.Turn(500);
  }
  return ReadFiles(dir);  // copies before the close
}

void WriteFiles(const DiskState& state, const std::string& prefix, const TempDir& dir) {
  const std::vector<fs::directory_entry> old(fs::directory_iterator(dir.Path("")), {});
  for (const auto& entry : old) fs::remove(entry.path());
  for (const auto& [name, content] : state) {
    if (name.starts_with(prefix)) dir.Write(name, content);
  }
}

std::size_t Hash(const DiskState& state, const std::string& prefix) {
  std::size_t hash = 0;
  for (const auto& [name, content] : state) {
    if (name.starts_with(prefix))
      hash = (hash * 31 + std::hash<std::string>()(name)) * 31 + std::hash<std::string>()(content);
  }
  return hash;
}
