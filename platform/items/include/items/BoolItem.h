#pragma once

#include "items/Item.h"

// A truth value: one byte, 1 or 0. Decodes every byte except 0 as true.
class BoolItem : public Item {
 public:
  explicit BoolItem(bool value = false) : value_(value) {}

  bool Value() const { return value_; }
  void Value(bool value) { value_ = value; }

  unsigned int Size() const override { return 1; }
  unsigned char* Encode(unsigned char* p) const override;
  unsigned char* Decode(unsigned char* p) override;
  std::unique_ptr<Item> New() const override { return std::make_unique<BoolItem>(); }

 private:
  bool value_;
};
