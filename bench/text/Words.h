#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

// The words of a drive line or of a command line.
using Words = std::vector<std::string>;

// The words of a text, separated by white space.
Words SplitWords(std::string_view text);

// The words from `first` on, with one blank between them.
std::string JoinWords(const Words& words, std::size_t first = 0);

// A word in quotes for a message: long words are cut, control characters become "?".
std::string Quoted(std::string_view word);

// Reads a number of 32 bits, decimal or with "0x" hexadecimal. False, and `value` unchanged, when the word is
// not a number.
bool ReadNumber(std::string_view word, std::uint32_t& value);

// Reads a number that may be negative and have decimals: "-71.05".
bool ReadDecimal(std::string_view word, double& value);

// The number of a word that is known to be a number.
std::uint32_t NumberOf(std::string_view word);
double DecimalOf(std::string_view word);

}  // namespace bench
