#pragma once

#include <string>

#include "seal/Sealer.h"

namespace store {

// Opens the key file; empty: where seal::KeyFilePath says. Without the key the sealer goes on, and
// the log tells why.
void UseSealKey(seal::Sealer& sealer, const std::string& given);

}  // namespace store
