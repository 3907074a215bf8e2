#include "items/SystickItem.h"

#include "system/BigEndian.h"

unsigned char* SystickItem::Encode(unsigned char* p) const {
  PutU32(p, tick_);
  return p + 4;
}

unsigned char* SystickItem::Decode(unsigned char* p) {
  tick_ = GetU32(p);
  return p + 4;
}
