#include "EarlierWal.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

#include "PlainFile.h"

namespace store {
namespace {

constexpr std::uint64_t kMaxBytes = std::uint64_t{16} << 20;
constexpr mode_t kTailMode = 0640;
constexpr int kMaxTails = 9;

using Bytes = std::vector<unsigned char>;

Bytes ReadFrom(const Descriptor& file, std::uint64_t offset, std::uint64_t end) {
  Bytes bytes(end > offset ? static_cast<std::size_t>(end - offset) : 0);
  bytes.resize(ReadFully(file, offset, bytes.data(), bytes.size()));
  return bytes;
}

// Whether the file already holds these bytes: an earlier start kept the tail but did not fold the WAL in.
bool Holds(const std::string& path, const Bytes& bytes) {
  struct stat status {};
  const Descriptor file = OpenPlainFile(path, status);
  return file.IsOpen() && static_cast<std::uint64_t>(status.st_size) == bytes.size() &&
         ReadFrom(file, 0, bytes.size()) == bytes && fsync(file.Get()) == 0;
}

bool WriteNew(const std::string& path, const Bytes& bytes) {
  const Descriptor file(open(path.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, kTailMode));
  if (!file.IsOpen()) return false;
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t put = write(file.Get(), bytes.data() + done, bytes.size() - done);
    if (put < 0 && errno == EINTR) continue;
    if (put <= 0) break;
    done += static_cast<std::size_t>(put);
  }
  if (done == bytes.size() && fsync(file.Get()) == 0) return true;
  (void)unlink(path.c_str());
  return false;
}

}  // namespace

EarlierWal EarlierWal::Look(const std::string& recording, unsigned int ownerOfRecording) {
  EarlierWal wal;
  const std::string path = recording + "-wal";
  struct stat status {};
  if (lstat(path.c_str(), &status) != 0) {
    if (errno != ENOENT) wal.state = State::kForeign;
    return wal;
  }
  const Descriptor file = OpenPlainFile(path, status);
  const bool foreign = !file.IsOpen() || status.st_uid != ownerOfRecording;
  if (foreign || static_cast<std::uint64_t>(status.st_size) > kMaxBytes) {
    wal.state = foreign ? State::kForeign : State::kTooLong;
    return wal;
  }
  wal.finding = ScanWal([&file](std::uint64_t offset, unsigned char* data, std::size_t size) {
    return offset < kMaxBytes ? ReadFully(file, offset, data, size) : 0;
  });
  if (wal.finding.state == WalState::kDamaged) {
    wal.state = State::kDamaged;
  } else if (wal.finding.state != WalState::kEmpty) {
    wal.state = State::kFolds;
  }
  return wal;
}

bool EarlierWal::KeepTail(const std::string& recording) const {
  if (finding.state != WalState::kTorn) return true;
  struct stat status {};
  const Descriptor file = OpenPlainFile(recording + "-wal", status);
  if (!file.IsOpen()) return false;
  const Bytes tail = ReadFrom(file, finding.endOfCommits, static_cast<std::uint64_t>(status.st_size));
  const std::string name = recording + "-wal.tail";
  for (int i = 1; i <= kMaxTails; ++i) {
    const std::string path = i == 1 ? name : name + std::to_string(i);
    if (Holds(path, tail) || WriteNew(path, tail))
      return SyncDirectory(recording.substr(0, recording.rfind('/') + 1)) == 0;
    if (errno != EEXIST) return false;  // errno of the failed open()
  }
  return false;
}

}  // namespace store
