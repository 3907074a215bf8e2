#pragma once

#include <cstddef>

// The shared-memory record of current metadata. POSIX shared memory named "/metadata", or as the environment
// variable METADATA_SHM says, with or without the leading slash; permissions 0640. The first process that
// attaches creates the record; it stays when the last process detaches. Attaching replaces a segment that
// other users may write, and fails where that is not possible.
//
// All fields are big-endian at fixed offsets. A 32-bit change counter begins at byte 88: odd during a write,
// higher by two after each write. A process copies the mapped bytes at `record` like this:
//
//   auto counter = reinterpret_cast<const std::uint32_t*>(record + kChangeCounterOffset);
//   const std::uint32_t before = __atomic_load_n(counter, __ATOMIC_ACQUIRE);
//   std::memcpy(copy, record, kChangeCounterOffset);
//   __atomic_thread_fence(__ATOMIC_ACQUIRE);
//   const std::uint32_t after = __atomic_load_n(counter, __ATOMIC_RELAXED);
//
// The copy is consistent when both counters are equal and even (the lowest bit of the record's last byte is
// 0); else the process copies again. It should give up after some tries: a writer killed while writing leaves
// the counter odd until the next write.
class MetadataSharedMem {
 public:
  static constexpr std::size_t kSize = 92;
  static constexpr std::size_t kChangeCounterOffset = 88;

  MetadataSharedMem() = default;
  ~MetadataSharedMem();
  MetadataSharedMem(const MetadataSharedMem&) = delete;
  MetadataSharedMem& operator=(const MetadataSharedMem&) = delete;

  // Returns the record's first byte. With `attachedOnly` false attaches first if needed and creates a missing
  // record; null on failure. With true returns null unless an earlier call attached. The pointer is valid as
  // long as this object.
  unsigned char* MetadataItems(bool attachedOnly);

  // Marks the record as being written during its lifetime; one at a time. `items` is the result of
  // MetadataItems.
  class Writing {
   public:
    explicit Writing(unsigned char* items);
    ~Writing();
    Writing(const Writing&) = delete;
    Writing& operator=(const Writing&) = delete;

   private:
    unsigned char* items_;
  };

 private:
  unsigned char* items_ = nullptr;
};
