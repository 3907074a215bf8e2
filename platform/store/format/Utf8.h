#pragma once

#include <cstddef>
#include <string_view>

namespace store {

// Bytes of the first character of a non-empty text; 0 if it is not valid UTF-8.
std::size_t CharacterBytes(std::string_view text);

// The recorded part of a text: up to its first NUL, at most `maxBytes`, without cutting a character.
std::string_view CutText(std::string_view text, std::size_t maxBytes);

// Replaces each byte that is not part of a UTF-8 character by "?". One wrong byte makes some programs reject
// the whole table.
void MakeUtf8(char* text, std::size_t size);

}  // namespace store
