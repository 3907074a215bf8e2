#pragma once

#include <cstdint>
#include <string>

namespace reader {

// Appends formatted text, as printf does.
[[gnu::format(printf, 2, 3)]] void Print(std::string& out, const char* format, ...);

// "410 ms", "4.1 s", "12 min 03 s", "7 h 05 min"
std::string DurationText(std::int64_t ms);

}  // namespace reader
