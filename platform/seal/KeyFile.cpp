#include "seal/KeyFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "BigEndian64.h"
#include "Crypto.h"

namespace seal {
namespace {

constexpr std::size_t kSlotBytes = 4096;
constexpr unsigned char kMark[] = {'M', 'M', 'D', 'B', 'k', 'e', 'y', '1'};
constexpr std::size_t kTreeAt = sizeof kMark + 8 + 8 + sizeof(Hash);  // mark, write count, place
constexpr std::size_t kCheckAt = kTreeAt + KeyTree::kStateBytes;
static_assert(kCheckAt + sizeof(Hash) <= kSlotBytes);

// Holds secrets, so it wipes itself.
struct Slot {
  Slot() = default;
  ~Slot() { Wipe(bytes); }
  Slot(const Slot&) = delete;
  Slot& operator=(const Slot&) = delete;

  std::span<unsigned char, KeyTree::kStateBytes> Tree() {
    return std::span(bytes).subspan<kTreeAt, KeyTree::kStateBytes>();
  }
  Hash Check(const std::string& hardware) const {
    HashState state(Label::kKeySlot);
    const auto length = static_cast<unsigned char>(hardware.size());
    state.Add({&length, 1});
    state.Add({reinterpret_cast<const unsigned char*>(hardware.data()), length});
    state.Add(std::span(bytes).first(kCheckAt));
    return state.End();
  }
  bool Valid(const std::string& hardware) const {
    const Hash check = Check(hardware);
    return std::equal(std::begin(kMark), std::end(kMark), bytes.begin()) &&
           std::equal(check.begin(), check.end(), bytes.begin() + kCheckAt);
  }

  std::array<unsigned char, kSlotBytes> bytes{};
};

off_t OffsetOf(int slot) {
  return static_cast<off_t>(slot) * static_cast<off_t>(kSlotBytes);
}

bool IsPrivate(int descriptor) {
  struct stat status {};
  return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == geteuid() &&
         (status.st_mode & 077) == 0;
}

// Makes the file's name durable.
bool SyncDirectoryOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  const std::string directory =
      slash == std::string::npos ? "." : path.substr(0, std::max<std::size_t>(slash, 1));
  const int descriptor = open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  const bool synced = descriptor >= 0 && fsync(descriptor) == 0;
  if (descriptor >= 0) (void)close(descriptor);
  return synced;
}

}  // namespace

KeyFile::Outcome KeyFile::Lock(const std::string& path, int flags) {
  Close();
  descriptor_ = open(path.c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | flags, 0600);
  if (descriptor_ < 0)
    return errno == ENOENT ? Outcome::kMissing : errno == ELOOP ? Outcome::kExposed : Outcome::kFailed;
  if (!IsPrivate(descriptor_)) return Outcome::kExposed;
  return flock(descriptor_, LOCK_EX | LOCK_NB) == 0 ? Outcome::kOk : Outcome::kBusy;
}

KeyFile::Outcome KeyFile::Create(const std::string& path, const std::string& hardware, const KeyTree& tree) {
  const Outcome outcome = Lock(path, O_CREAT | O_EXCL);
  if (outcome == Outcome::kMissing) return Outcome::kFailed;  // the directory is missing
  if (outcome != Outcome::kOk) return outcome;
  hardware_ = hardware;
  slot_ = 1;
  written_ = 0;
  if (Save(tree, Place()) && SyncDirectoryOf(path)) return Outcome::kOk;
  (void)unlink(path.c_str());
  Close();
  return Outcome::kFailed;
}

KeyFile::Outcome KeyFile::Open(const std::string& path, const std::string& hardware, KeyTree& tree,
                               Place& last) {
  Outcome outcome = Lock(path, 0);
  hardware_ = hardware;
  if (outcome == Outcome::kOk) outcome = Read(tree, last);
  if (outcome == Outcome::kOk && !Erase(1 - slot_)) outcome = Outcome::kFailed;
  if (outcome != Outcome::kOk) Close();
  return outcome;
}

KeyFile::Outcome KeyFile::Read(KeyTree& tree, Place& last) {
  Outcome outcome = Outcome::kInvalid;
  written_ = 0;
  for (int i = 0; i < 2; ++i) {
    Slot slot;
    const ssize_t size = pread(descriptor_, slot.bytes.data(), kSlotBytes, OffsetOf(i));
    if (size < 0) return Outcome::kFailed;
    if (static_cast<std::size_t>(size) < kSlotBytes || !slot.Valid(hardware_)) continue;
    const unsigned char* p = slot.bytes.data() + sizeof kMark;
    KeyTree read;
    if (GetU64(p) <= written_ || !read.Load(slot.Tree())) continue;
    tree = read;
    written_ = GetU64(p);
    last.number = static_cast<std::int64_t>(GetU64(p + 8));
    std::copy_n(p + 16, last.hash.size(), last.hash.begin());
    slot_ = i;
    outcome = Outcome::kOk;
  }
  return outcome;
}

bool KeyFile::Save(const KeyTree& tree, const Place& last) {
  const int older = slot_;
  if (!WriteSlot(1 - slot_, tree, last)) return false;
  slot_ = 1 - slot_;
  return Erase(older);
}

bool KeyFile::WriteSlot(int slot, const KeyTree& tree, const Place& last) {
  Slot made;
  unsigned char* p = std::copy(std::begin(kMark), std::end(kMark), made.bytes.begin());
  PutU64(p, ++written_);
  PutU64(p + 8, static_cast<std::uint64_t>(last.number));
  std::copy(last.hash.begin(), last.hash.end(), p + 16);
  tree.Save(made.Tree());
  const Hash check = made.Check(hardware_);
  std::copy(check.begin(), check.end(), made.bytes.begin() + kCheckAt);
  return pwrite(descriptor_, made.bytes.data(), kSlotBytes, OffsetOf(slot)) ==
             static_cast<ssize_t>(kSlotBytes) &&
         fdatasync(descriptor_) == 0;
}

bool KeyFile::Erase(int slot) {
  const std::array<unsigned char, kSlotBytes> zeros{};
  return pwrite(descriptor_, zeros.data(), kSlotBytes, OffsetOf(slot)) == static_cast<ssize_t>(kSlotBytes) &&
         fdatasync(descriptor_) == 0;
}

void KeyFile::Close() {
  if (descriptor_ >= 0) (void)close(descriptor_);
  descriptor_ = -1;
}

}  // namespace seal
