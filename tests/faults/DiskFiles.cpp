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

DiskState RunWithoutClose() {
  const TempDir dir;
  Usage usage(dir.Path("metadata"), StoreOptions());
  (void)usage.Open();
  for (int i = 0; i < 10; ++i) {
    usage.Bookmark();
    usage.Turn(500);
  }
  return ReadFiles(dir);  // the close comes too late
}

void WriteFiles(const DiskState& state, const std::string& prefix, const TempDir& dir) {
  const std::vector<fs::directory_entry> old(fs::directory_iterator(dir.Path("")), {});
  for (const auto& entry : old) fs::remove(entry.path());
  for (const auto& [name, content] : state) {
    if (name.starts_with(prefix)) dir.Write(name, content);
  }
}

std::uint64_t Hash(const DiskState& state, const std::string& prefix) {
  std::uint64_t hash = 0xCBF29CE484222325U;
  const auto add = [&hash](std::uint64_t word) {
    hash = (hash ^ word) * 0x100000001B3U;  // FNV-1a by words
    hash ^= hash >> 29U;
  };
  for (const auto& [name, content] : state) {
    if (!name.starts_with(prefix)) continue;
    for (const std::string* text : {&name, &content}) {
      add(text->size());
      for (std::size_t i = 0; i < text->size(); i += sizeof(std::uint64_t)) {
        std::uint64_t word = 0;
        (void)text->copy(reinterpret_cast<char*>(&word), sizeof word, i);
        add(word);
      }
    }
  }
  return hash;
}
