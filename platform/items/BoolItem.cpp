#include "items/BoolItem.h"

unsigned char* BoolItem::Encode(unsigned char* p) const {
  *p = value_ ? 1 : 0;
  return p + 1;
}

unsigned char* BoolItem::Decode(unsigned char* p) {
  value_ = *p != 0;
  return p + 1;
}
