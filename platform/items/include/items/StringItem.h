#pragma once

#include <string>

#include "items/Item.h"

// A text of at most kMaxLength bytes: a 16-bit length, then the bytes, without NUL.
class StringItem : public Item {
 public:
  static constexpr unsigned int kMaxLength = 255;

  // Cuts a longer text.
  explicit StringItem(const std::string& text = {}) { Value(text); }

  const std::string& Value() const { return text_; }
  void Value(const std::string& text) { text_.assign(text, 0, kMaxLength); }

  unsigned int Size() const override { return 2 + static_cast<unsigned int>(text_.size()); }
  unsigned char* Encode(unsigned char* p) const override;
  // Keeps the first kMaxLength bytes of a longer text, and skips all of it.
  unsigned char* Decode(unsigned char* p) override;
  std::unique_ptr<Item> New() const override { return std::make_unique<StringItem>(); }

 private:
  std::string text_;
};
