#pragma once

#include <cstddef>

// View of the shared-memory record of current metadata: POSIX shared memory, by default
// "/metadata", or the name that the environment variable METADATA_SHM gives (with or without its
// leading slash); permissions 0640. Created by the first process that attaches, kept when the last
// one detaches. One that others than its user and root could write is replaced, or not attached to
// where it cannot be.
//
// All fields are big-endian at fixed offsets. Byte 88 begins a 32-bit change counter for readers:
// odd while a writer is at work, higher by two after each change. A reader, in any process, with
// `record` the mapped bytes:
//
//   auto counter = reinterpret_cast<const std::uint32_t*>(record + kChangeCounterOffset);
//   const std::uint32_t before = __atomic_load_n(counter, __ATOMIC_ACQUIRE);
//   std::memcpy(copy, record, kChangeCounterOffset);
//   __atomic_thread_fence(__ATOMIC_ACQUIRE);
//   const std::uint32_t after = __atomic_load_n(counter, __ATOMIC_RELAXED);
//
// The copy is whole when both are the same and even (the lowest bit of the record's last byte),
// else the reader starts over. It should give up after some tries: a writer that was killed at
// work leaves the counter odd until the next one begins.
class MetadataSharedMem {
 public:
  static constexpr std::size_t kSize = 92;
  static constexpr std::size_t kChangeCounterOffset = 88;

  MetadataSharedMem() = default;
  ~MetadataSharedMem();
  MetadataSharedMem(const MetadataSharedMem&) = delete;
  MetadataSharedMem& operator=(const MetadataSharedMem&) = delete;

  // The record's first byte, or null. With `attachedOnly` false attaches first where that has not
  // been done, creating the record where there is none; null when that fails. With true never
  // attaches: null unless an earlier call did. The pointer is valid as long as this object.
  unsigned char* MetadataItems(bool attachedOnly);

  // Marks the record as being written as long as it lives; one at a time. `items` is what
  // MetadataItems gave, or null.
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
