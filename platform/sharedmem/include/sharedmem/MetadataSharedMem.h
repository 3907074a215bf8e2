#pragma once

#include <cstddef>

// View of the shared-memory record of current metadata: POSIX shared memory, by default
// "/metadata", or the name that the environment variable METADATA_SHM gives (with or without its
// leading slash); permissions 0640. Created by the first process that attaches, kept when the last
// one detaches.
//
// All fields are big-endian at fixed offsets. Byte 88 begins a 32-bit change counter for readers:
// odd while a writer is at work, higher by two after each change. A reader takes the counter, the
// fields, and the counter again, and starts over when the first was odd or the two differ.
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

  // Marks the record as being written as long as it lives. `items` may be null.
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
