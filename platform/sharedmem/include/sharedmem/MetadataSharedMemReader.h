#pragma once

#include <array>
#include <cstddef>

#include "sharedmem/MetadataSharedMem.h"

// Reads the shared record; never creates or changes it.
class MetadataSharedMemReader {
 public:
  using Fields = std::array<unsigned char, MetadataSharedMem::kChangeCounterOffset>;

  MetadataSharedMemReader() = default;
  ~MetadataSharedMemReader();
  MetadataSharedMemReader(const MetadataSharedMemReader&) = delete;
  MetadataSharedMemReader& operator=(const MetadataSharedMemReader&) = delete;

  // Returns 0 or an errno value: ENOENT when the record is missing, EINVAL when it is too short.
  int Attach();

  // Copies the fields when no write is going on. Returns false when not attached, or when the counter stays
  // odd because a writer was killed.
  bool Read(Fields& fields) const;

 private:
  const unsigned char* items_ = nullptr;
};
