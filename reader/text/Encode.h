#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace reader {

// One line of text without what a terminal would obey: control characters of both sets (C0 with line ends,
// C1) and bytes that are not UTF-8 become "?".
void AppendPrintable(std::string_view text, std::string& out);
std::string Printable(std::string_view text);
// The same for lines of text, whose line ends and tabs stay.
std::string PrintableLines(std::string_view text);

// A number; a text in JSON quotes, what is no UTF-8 replaced.
void AppendNumber(std::int64_t number, std::string& out);
void AppendDecimal(double number, int decimals, std::string& out);
void AppendJson(std::string_view text, std::string& out);

}  // namespace reader
