#include "sharedmem/MetadataSharedMem.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string>

#include "RecordName.h"
#include "log/LogLine.h"
#include "os/Descriptor.h"
#include "system/BigEndian.h"

namespace {

constexpr LogSource log{"MetadataSharedMem"};
constexpr mode_t kMode = 0640;

// Whether only this user and root can write or truncate the segment.
bool IsOurs(int fd) {
  struct stat status {};
  return fstat(fd, &status) == 0 && (status.st_uid == geteuid() || status.st_uid == 0) &&
         (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

// Opens the record's segment; replaces one that other users may write. Sets errno on failure.
os::Descriptor OpenRecord(const std::string& name) {
  for (int tries = 0; tries < 3; ++tries) {  // another process may create or remove the segment meanwhile
    os::Descriptor made(shm_open(name.c_str(), O_RDWR | O_CREAT | O_EXCL, kMode));
    if (made.IsOpen()) {
      (void)fchmod(made.Get(), kMode);  // whatever the umask
      return made;
    }
    if (errno != EEXIST) return {};
    os::Descriptor found(shm_open(name.c_str(), O_RDWR, 0));
    if (!found.IsOpen() && errno == ENOENT) continue;
    if (!found.IsOpen() || IsOurs(found.Get())) return found;
    if (shm_unlink(name.c_str()) != 0 && errno != ENOENT) return {};
    log(kLogError, "Replaces ", name, ", which other users may write");
  }
  errno = EACCES;
  return {};
}

// Extends the segment to the record's size and keeps its content. Reserves the memory now: when memory is
// full, a later write to a missing page would end the process. Sets errno on failure.
bool Reserve(int fd) {
  struct stat status {};
  if (fstat(fd, &status) != 0) return false;
  if (!S_ISREG(status.st_mode)) {
    errno = EINVAL;
    return false;
  }
  int error = EINTR;
  while (error == EINTR) error = posix_fallocate(fd, 0, MetadataSharedMem::kSize);
  if (error != 0) errno = error;
  return error == 0;
}

unsigned char* Map(int fd) {
  void* address = mmap(nullptr, MetadataSharedMem::kSize, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
  return address == MAP_FAILED ? nullptr : static_cast<unsigned char*>(address);
}

unsigned char* Attach() {
  const std::string name = SharedRecordName();
  const os::Descriptor fd = OpenRecord(name);
  unsigned char* items = fd.IsOpen() && Reserve(fd.Get()) ? Map(fd.Get()) : nullptr;
  if (!items) log(kLogError, "Cannot attach ", name, ": ", std::strerror(errno));
  return items;
}

std::uint32_t* Counter(unsigned char* items) {
  return reinterpret_cast<std::uint32_t*>(items + MetadataSharedMem::kChangeCounterOffset);
}

std::uint32_t LoadCounter(const unsigned char* items) {
  return GetU32(items + MetadataSharedMem::kChangeCounterOffset);
}

void StoreCounter(unsigned char* items, std::uint32_t value) {
  unsigned char bytes[sizeof value];
  PutU32(bytes, value);
  std::uint32_t word = 0;
  std::memcpy(&word, bytes, sizeof word);
  __atomic_store_n(Counter(items), word, __ATOMIC_RELEASE);
}

}  // namespace

MetadataSharedMem::~MetadataSharedMem() {
  if (items_) munmap(items_, kSize);
}

unsigned char* MetadataSharedMem::MetadataItems(bool attachedOnly) {
  if (!items_ && !attachedOnly) items_ = Attach();
  return items_;
}

// A writer killed while writing left the counter odd; (n + 1) | 1 is then a new odd value, too.
MetadataSharedMem::Writing::Writing(unsigned char* items) : items_(items) {
  if (!items_) return;
  StoreCounter(items_, (LoadCounter(items_) + 1) | 1);
  __atomic_thread_fence(__ATOMIC_RELEASE);  // no field is written before the odd counter
}

MetadataSharedMem::Writing::~Writing() {
  if (items_) StoreCounter(items_, (LoadCounter(items_) | 1) + 1);
}
