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

  // The numbers of the files that are there, newest first, and the highest that is in use in any way,
  // if only by a log that was left over (0 for none). False when the directory cannot be read.
  bool List(std::vector<std::uint32_t>& numbers, std::uint32_t& highest) const;

  // Whether the path, which contains a "/", is that of a file of the store or its log, there or not.
  bool IsOneOf(const std::string& path) const;

 private:
  std::uint32_t NumberOf(std::string_view name, bool& isRecording) const;

  std::string base_;
  std::string directory_;
  std::string prefix_;  // of the names in the directory
};

// Creates an empty file that was not there before; 0 or an errno value.
int CreateNewFile(const std::string& path);

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
