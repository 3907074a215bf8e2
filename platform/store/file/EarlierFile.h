#pragma once

#include <cstdint>
#include <string>

namespace store {

// What stands under a recording's name, as far as its owner and its first bytes tell.
enum class EarlierFile {
  kForeign,  // another user's, or no file: nothing that we have made
  kEmpty,
  kRecording,
  kStrange,  // a file of ours that does not begin like a recording
};

// Opens nothing but plain files. `owner` is set for all but the foreign ones. Files of this user, of root and
// of the directory's owner are ours.
EarlierFile LookAtEarlierFile(const std::string& path, std::uint32_t& owner);

}  // namespace store
