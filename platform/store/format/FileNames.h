#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace store {

// The parsed name of a recording: "x/metadata.000012.db" is number 12 of "x/metadata".
struct RecordingName {
  std::string_view base;
  std::uint32_t number = 0;
};
// Empty for every other name. `base` points into `path`.
std::optional<RecordingName> ParseRecordingName(std::string_view path);

// The files of one store: "<base>.NNNNNN.db".
class FileNames {
 public:
  explicit FileNames(std::string base);

  std::string PathOf(std::uint32_t number) const;

  struct Numbers {
    std::vector<std::uint32_t> recordings;  // by name, newest first; the content can be anything
    std::vector<std::uint32_t> taken;       // also by files beside a recording, such as a WAL; ascending

    // First free number above `number`; after 999999999 the lowest free number.
    std::uint32_t FreeAfter(std::uint32_t number) const;
  };

  // 0, or an errno value if the directory cannot be read.
  int List(Numbers& numbers) const;

  const std::string& Directory() const { return directory_; }

  // Whether the path, which contains a "/", names a recording of this store or a file beside one, existing or
  // not.
  bool IsOneOf(const std::string& path) const;

 private:
  std::uint32_t NumberOf(std::string_view name, bool& isRecording) const;

  std::string base_;
  std::string directory_;
  std::string prefix_;  // of the file names
};

// Identifies a file, to see later whether a path still leads to it.
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::uint64_t bytes = 0;

  bool SameFile(const FileIdentity& other) const { return device == other.device && inode == other.inode; }
};

// 0, or an errno value with `identity` unchanged.
int Identify(const std::string& path, FileIdentity& identity);

// "x/y.db" gives "y.db".
std::string NameOf(const std::string& path);

}  // namespace store
