#pragma once

#include "items/Item.h"

// A system tick: 32 bits.
class SystickItem : public Item {
 public:
  explicit SystickItem(unsigned int tick = 0) : tick_(tick) {}

  unsigned int Tick() const { return tick_; }
  void Tick(unsigned int tick) { tick_ = tick; }

  unsigned int Size() const override { return 4; }
  unsigned char* Encode(unsigned char* p) const override;
  unsigned char* Decode(unsigned char* p) override;
  std::unique_ptr<Item> New() const override { return std::make_unique<SystickItem>(); }

 private:
  unsigned int tick_;
};
