#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace store {

// The name of a recording, taken apart: "x/metadata.000012.db" is number 12 of "x/metadata".
struct RecordingName {
  std::string_view base;
  std::uint32_t number = 0;
};
// Nothing for every other name; the base is part of `path`.
std::optional<RecordingName> ParseRecordingName(std::string_view path);

// The files of one store: "<base>.NNNNNN.db".
class FileNames {
 public:
  explicit FileNames(std::string base);

  std::string PathOf(std::uint32_t number) const;

  struct Numbers {
    std::vector<std::uint32_t>
        recordings;                    // names of recordings, newest first; what stands there may be anything
    std::vector<std::uint32_t> taken;  // also by what only belongs to one, a log say; ascending

    // The first above `number` that is not taken; behind the last of nine digits the lowest one.
    std::uint32_t FreeAfter(std::uint32_t number) const;
  };

  // 0 or an errno value: the directory cannot be read.
  int List(Numbers& numbers) const;

  const std::string& Directory() const { return directory_; }

  // Whether the path, which contains a "/", is that of a file of the store or its log, there or not.
  bool IsOneOf(const std::string& path) const;

 private:
  std::uint32_t NumberOf(std::string_view name, bool& isRecording) const;

  std::string base_;
  std::string directory_;
  std::string prefix_;  // of the names in the directory
};

// A file as it was seen: tells whether the path still leads to it.
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::uint64_t bytes = 0;

  bool SameFile(const FileIdentity& other) const { return device == other.device && inode == other.inode; }
};

// 0 or an errno value; the identity is unchanged then.
int Identify(const std::string& path, FileIdentity& identity);

// "x/y.db" gives "y.db".
std::string NameOf(const std::string& path);

}  // namespace store
