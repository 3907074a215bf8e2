#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The words of a drive line or of a command line.
using Words = std::vector<std::string>;

// The words of a text, separated by white space.
Words SplitWords(std::string_view text);

// The words from `first` on, with one blank between them.
std::string JoinWords(const Words& words, std::size_t first = 0);

// A word in quotes, fit for a message: cut when it is long, control characters as "?".
std::string Quoted(std::string_view word);

// A number of 32 bits, decimal or with "0x" hexadecimal. False when the word is none; `value` is
// then unchanged.
bool ReadNumber(std::string_view word, std::uint32_t& value);

// The same for a decimal number, which may be negative and have decimals: "-71.05".
bool ReadDecimal(std::string_view word, double& value);

// The number that a word is known to be.
std::uint32_t NumberOf(std::string_view word);
double DecimalOf(std::string_view word);
