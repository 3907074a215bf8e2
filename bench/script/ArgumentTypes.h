#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace bench {

// A type of argument: the words that it accepts.
struct ArgumentType {
  enum Kind { kWord, kWhole, kDecimal };

  const char* name;
  const char* what;  // for people; Describe adds the range of a number
  Kind kind = kWord;
  // The range of a number.
  double least = 0;
  double most = 0;
  // Whether a word has this type.
  bool (*accepts)(const std::string& word) = nullptr;

  bool Accepts(const std::string& word) const;
  // `what`, with the range of a number.
  std::string Describe() const;
};

std::span<const ArgumentType> ArgumentTypes();

// Null when no type has that name.
const ArgumentType* FindArgumentType(const std::string& name);

// The bit of a vehicle input, as "lights"; 0 for an unknown name.
std::uint32_t InputBit(const std::string& word);

}  // namespace bench
