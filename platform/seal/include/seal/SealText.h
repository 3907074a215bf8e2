#pragma once

#include <string>
#include <string_view>

#include "seal/Types.h"

namespace seal {

// A public key as 64 hexadecimal digits.
std::string KeyText(const PublicKey& key);
// False, and `key` is unchanged, if the text is anything else.
bool ParseKey(std::string_view text, PublicKey& key);

}  // namespace seal
