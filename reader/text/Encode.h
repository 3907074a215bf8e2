#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// A text without what a terminal would obey.
void AppendPrintable(std::string_view text, std::string& out);

// A number; a text in JSON quotes, what is no UTF-8 replaced.
void AppendNumber(std::int64_t number, std::string& out);
void AppendDecimal(double number, int decimals, std::string& out);
void AppendJson(std::string_view text, std::string& out);
