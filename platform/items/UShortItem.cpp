#include "items/UShortItem.h"

#include "system/BigEndian.h"

unsigned char* UShortItem::Encode(unsigned char* p) const {
  PutU16(p, value_);
  return p + 2;
}

unsigned char* UShortItem::Decode(unsigned char* p) {
  value_ = GetU16(p);
  return p + 2;
}
