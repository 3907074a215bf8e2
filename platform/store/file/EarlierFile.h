#pragma once

#include <cstdint>
#include <string>

namespace store {

// Kind of the file under a recording's name, judged by its owner and first bytes.
enum class EarlierFile {
  kForeign,  // not ours, or not a regular file
  kEmpty,
  kRecording,
  kStrange,  // ours, but does not begin like a recording
};

// Opens only regular files. A file is ours if it belongs to this user, to root or to the directory's owner.
// `owner` is valid unless the result is kForeign.
EarlierFile LookAtEarlierFile(const std::string& path, std::uint32_t& owner);

}  // namespace store
