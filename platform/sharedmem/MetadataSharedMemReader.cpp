#include "sharedmem/MetadataSharedMemReader.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdint>
#include <cstring>

#include "RecordName.h"
#include "os/Descriptor.h"

MetadataSharedMemReader::~MetadataSharedMemReader() {
  if (items_ != nullptr) munmap(const_cast<unsigned char*>(items_), MetadataSharedMem::kSize);
}

int MetadataSharedMemReader::Attach() {
  if (items_ != nullptr) return 0;
  const os::Descriptor fd(shm_open(SharedRecordName().c_str(), O_RDONLY, 0));
  if (!fd.IsOpen()) return errno;
  struct stat status {};
  if (fstat(fd.Get(), &status) != 0) return errno;
  if (status.st_size < static_cast<off_t>(MetadataSharedMem::kSize)) return EINVAL;
  void* address = mmap(nullptr, MetadataSharedMem::kSize, PROT_READ, MAP_SHARED, fd.Get(), 0);
  if (address == MAP_FAILED) return errno;
  items_ = static_cast<const unsigned char*>(address);
  return 0;
}

bool MetadataSharedMemReader::Read(Fields& fields) const {
  constexpr int kTries = 1000;
  if (items_ == nullptr) return false;
  const auto* counter = reinterpret_cast<const std::uint32_t*>(items_ + fields.size());
  for (int i = 0; i < kTries; ++i) {
    const std::uint32_t before = __atomic_load_n(counter, __ATOMIC_ACQUIRE);
    std::memcpy(fields.data(), items_, fields.size());
    __atomic_thread_fence(__ATOMIC_ACQUIRE);
    const std::uint32_t after = __atomic_load_n(counter, __ATOMIC_RELAXED);
    unsigned char bytes[sizeof before];
    std::memcpy(bytes, &before, sizeof before);
    if (before == after && (bytes[sizeof before - 1] & 1) == 0) return true;
    (void)sched_yield();
  }
  return false;
}
