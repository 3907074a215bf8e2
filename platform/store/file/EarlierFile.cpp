#include "EarlierFile.h"

#include <unistd.h>

#include <string_view>

#include "PlainFile.h"
#include "Schema.h"
#include "system/BigEndian.h"

namespace store {
namespace {

constexpr std::string_view kMagic{"SQLite format 3\0", 16};
constexpr std::size_t kApplicationIdAt = 68;
constexpr std::size_t kHeaderBytes = 100;

bool IsOurs(const std::string& path, uid_t owner) {
  if (owner == geteuid() || owner == 0) return true;
  struct stat directory {};
  return stat(path.substr(0, path.rfind('/') + 1).c_str(), &directory) == 0 && directory.st_uid == owner;
}

}  // namespace

EarlierFile LookAtEarlierFile(const std::string& path, std::uint32_t& owner) {
  struct stat status {};
  // Skips most planted files without opening them.
  if (lstat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return EarlierFile::kForeign;
  owner = status.st_uid;
  if (!IsOurs(path, owner)) return EarlierFile::kForeign;
  if (status.st_size == 0) return EarlierFile::kEmpty;
  const Descriptor file = OpenPlainFile(path, status);
  if (!file.IsOpen() || status.st_uid != owner) return EarlierFile::kForeign;
  unsigned char header[kHeaderBytes] = {};
  if (ReadFully(file, 0, header, sizeof header) < sizeof header) return EarlierFile::kStrange;
  const bool isSqlite = std::string_view(reinterpret_cast<char*>(header), kMagic.size()) == kMagic;
  return isSqlite && GetU32(header + kApplicationIdAt) == kApplicationId ? EarlierFile::kRecording
                                                                         : EarlierFile::kStrange;
}

}  // namespace store
