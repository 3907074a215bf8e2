#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Messages.h"
#include "seal/Types.h"

namespace reader {

// The last seal of the newest of these recordings, oldest first, that has one. Tells of files that cannot be
// opened.
std::optional<seal::Place> NewestSeal(const std::vector<std::string>& files, Messages& messages);

}  // namespace reader
