#include "SharedRecord.h"

#include "sharedmem/MetadataSharedMem.h"
#include "system/BigEndian.h"

namespace {

constexpr unsigned int kVersionOffset = 0;
constexpr std::uint16_t kKept = 0x0100;
constexpr std::uint16_t kEnded = 0x0001;

struct Field {
  unsigned int offset;
  unsigned int bits;
  std::uint32_t value;
};

// In the order of their offsets. Bytes that are not listed stay as they are.
constexpr Field kInitialFields[] = {
    {kVersionOffset, 16, kKept},
    {8, 8, 0},
    {12, 32, 0},
    {16, 16, 0},
    {20, 32, 0},
    {24, 8, 0},
    {28, 32, 0},
    {32, 16, 0},
    {36, 32, 0},
    {40, 32, 0},
    {44, 32, 0},
    {48, 32, 0},
    {52, 32, 0x07FFFFFF},
    {56, 32, 0},
    {60, 32, 0},
    {64, 16, 0},
    {76, 32, 0},
    {80, 32, 0},
    {84, 16, 0},
};

void Put(unsigned char* items, const Field& field) {
  unsigned char* p = items + field.offset;
  if (field.bits == 32) {
    PutU32(p, field.value);
  } else if (field.bits == 16) {
    PutU16(p, static_cast<std::uint16_t>(field.value));
  } else {
    *p = static_cast<unsigned char>(field.value);
  }
}

}  // namespace

void sharedrecord::Reset(unsigned char* items) {
  const MetadataSharedMem::Writing writing(items);
  for (const Field& field : kInitialFields) Put(items, field);
}

void sharedrecord::MarkEnded(unsigned char* items) {
  const MetadataSharedMem::Writing writing(items);
  PutU16(items + kVersionOffset, kEnded);
}
