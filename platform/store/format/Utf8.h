#pragma once

#include <cstddef>
#include <string_view>

namespace store {

// Bytes of the character that begins the text, which is not empty; 0 where none does.
std::size_t CharacterBytes(std::string_view text);

// The part of a text that is recorded: up to its first NUL and at most `maxBytes`, ending between
// two characters.
std::string_view CutText(std::string_view text, std::size_t maxBytes);

// Replaces every byte that is no part of a UTF-8 character by "?": one wrong byte in a recording
// makes some readers refuse the whole table.
void MakeUtf8(char* text, std::size_t size);

}  // namespace store
