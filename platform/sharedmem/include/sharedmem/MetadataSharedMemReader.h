#pragma once

#include <array>
#include <cstddef>

#include "sharedmem/MetadataSharedMem.h"

// The shared record for readers: it is neither created nor changed.
class MetadataSharedMemReader {
 public:
  using Fields = std::array<unsigned char, MetadataSharedMem::kChangeCounterOffset>;

  MetadataSharedMemReader() = default;
  ~MetadataSharedMemReader();
  MetadataSharedMemReader(const MetadataSharedMemReader&) = delete;
  MetadataSharedMemReader& operator=(const MetadataSharedMemReader&) = delete;

  // 0, or an errno value: ENOENT there is no record, EINVAL it is too short.
  int Attach();

  // Copies the fields while no writer is at work. False when that is not possible: not attached,
  // or a writer was killed at work.
  bool Read(Fields& fields) const;

 private:
  const unsigned char* items_ = nullptr;
};
