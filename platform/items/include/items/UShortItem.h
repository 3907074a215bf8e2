#pragma once

#include <cstdint>

#include "items/Item.h"

// An unsigned number of 16 bits.
class UShortItem : public Item {
 public:
  explicit UShortItem(std::uint16_t value = 0) : value_(value) {}

  std::uint16_t Value() const { return value_; }
  void Value(std::uint16_t value) { value_ = value; }

  unsigned int Size() const override { return 2; }
  unsigned char* Encode(unsigned char* p) const override;
  unsigned char* Decode(unsigned char* p) override;
  std::unique_ptr<Item> New() const override { return std::make_unique<UShortItem>(); }

 private:
  std::uint16_t value_;
};
