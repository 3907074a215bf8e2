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
#include "system/BigEndian.h"

namespace {

constexpr LogSource log{"MetadataSharedMem"};
constexpr mode_t kMode = 0640;

// Whether nobody else but root can write it, or cut it short under our hands.
bool IsOurs(int fd) {
  struct stat status {};
  return fstat(fd, &status) == 0 && (status.st_uid == geteuid() || status.st_uid == 0) &&
         (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

// The descriptor of the record, or -1. One that another user has put there is no record.
int OpenRecord(const std::string& name) {
  for (int tries = 0; tries < 3; ++tries) {  // it may come or go in between
    int fd = shm_open(name.c_str(), O_RDWR | O_CREAT | O_EXCL, kMode);
    if (fd >= 0) {
      (void)fchmod(fd, kMode);  // whatever the umask
      return fd;
    }
    if (errno != EEXIST) return -1;
    fd = shm_open(name.c_str(), O_RDWR, 0);
    if (fd < 0 && errno == ENOENT) continue;
    if (fd < 0 || IsOurs(fd)) return fd;
    close(fd);
    if (shm_unlink(name.c_str()) != 0 && errno != ENOENT) return -1;
    log(kLogError, "replaces ", name, ", which others could write");
  }
  errno = EACCES;
  return -1;
}

// Makes the record long enough, and keeps what it holds. Its memory is taken now: a write to memory
// that a full system cannot give later would end the process. Sets errno where it fails.
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
  const int fd = OpenRecord(name);
  unsigned char* items = fd >= 0 && Reserve(fd) ? Map(fd) : nullptr;
  if (!items) log(kLogError, "cannot attach ", name, ": ", std::strerror(errno));
  if (fd >= 0) close(fd);
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

// A writer that was killed at work left the counter odd: (n + 1) | 1 is a new odd value then, too.
MetadataSharedMem::Writing::Writing(unsigned char* items) : items_(items) {
  if (!items_) return;
  StoreCounter(items_, (LoadCounter(items_) + 1) | 1);
  __atomic_thread_fence(__ATOMIC_RELEASE);  // no field before the odd counter
}

MetadataSharedMem::Writing::~Writing() {
  if (items_) StoreCounter(items_, (LoadCounter(items_) | 1) + 1);
}
