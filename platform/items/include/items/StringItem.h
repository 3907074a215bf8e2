#pragma once

#include <string>

#include "items/Item.h"

// A text of up to kMaxLength bytes: its length in 16 bits, then the bytes, without NUL.
class StringItem : public Item {
 public:
  static constexpr unsigned int kMaxLength = 255;

  // A longer text is cut.
  explicit StringItem(const std::string& text = {}) { Value(text); }

  const std::string& Value() const { return text_; }
  void Value(const std::string& text) { text_.assign(text, 0, kMaxLength); }

  unsigned int Size() const override { return 2 + static_cast<unsigned int>(text_.size()); }
  unsigned char* Encode(unsigned char* p) const override;
  // Of a longer text the first kMaxLength bytes are kept; it is skipped whole.
  unsigned char* Decode(unsigned char* p) override;
  std::unique_ptr<Item> New() const override { return std::make_unique<StringItem>(); }

 private:
  std::string text_;
};
