#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace bench {

// The words that an argument of a verb may be.
struct ArgumentType {
  enum Kind { kWord, kWhole, kDecimal };

  const char* name;
  const char* what;  // for people; the range of a number is added
  Kind kind = kWord;
  // Of a number: its range.
  double least = 0;
  double most = 0;
  // Of a word: whether it is one of this type.
  bool (*accepts)(const std::string& word) = nullptr;

  bool Accepts(const std::string& word) const;
  // `what`, with the range of a number.
  std::string Describe() const;
};

std::span<const ArgumentType> ArgumentTypes();

// Null when no type has that name.
const ArgumentType* FindArgumentType(const std::string& name);

// The bit of a vehicle input by its name ("lights"); 0 for an unknown name.
std::uint32_t InputBit(const std::string& word);

}  // namespace bench
