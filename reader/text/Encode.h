#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace reader {

// Makes one line safe for a terminal: control characters (C0 with line ends, C1) and invalid UTF-8 become
// "?".
void AppendPrintable(std::string_view text, std::string& out);
std::string Printable(std::string_view text);
// Same for several lines: line ends and tabs stay.
std::string PrintableLines(std::string_view text);

// AppendJson adds JSON quotes and replaces invalid UTF-8.
void AppendNumber(std::int64_t number, std::string& out);
void AppendDecimal(double number, int decimals, std::string& out);
void AppendJson(std::string_view text, std::string& out);

}  // namespace reader
