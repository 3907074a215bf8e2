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

// A word in quotes, for messages. Long words are cut; control characters become "?".
std::string Quoted(std::string_view word);

// Reads a 32-bit number, decimal or hexadecimal with "0x". When the word is not a number, returns false and
// does not change `value`.
bool ReadNumber(std::string_view word, std::uint32_t& value);

// Reads a decimal number, as "-71.05".
bool ReadDecimal(std::string_view word, double& value);

// The value of a word that is known to be a number.
std::uint32_t NumberOf(std::string_view word);
double DecimalOf(std::string_view word);

}  // namespace bench
