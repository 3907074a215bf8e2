#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

inline std::string TextOfFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// A temporary directory. The destructor removes it and its content.
class TempDir {
 public:
  TempDir() {
    std::string name = (std::filesystem::temp_directory_path() / "mm-test-XXXXXX").string();
    if (!mkdtemp(name.data())) std::abort();
    path_ = name;
  }
  ~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  std::string Path(std::string_view name) const { return path_ + "/" + std::string(name); }

  // Writes a file, and creates its directories.
  std::string Write(std::string_view name, std::string_view content) const {
    std::string path = Path(name);
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << content;
    return path;
  }

  std::string Read(std::string_view name) const { return TextOfFile(Path(name)); }

 private:
  std::string path_;
};
