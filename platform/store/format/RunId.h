#pragma once

#include <array>
#include <string>

namespace store {

// Tells the files of one run from those of every other run, also of other recorders. Zeros: not known.
using RunId = std::array<unsigned char, 16>;

// Random bytes of the kernel. Never waits for them: zeros where it has none.
RunId NewRunId();

// As SQL writes a BLOB: "x'0f...'".
std::string BlobSql(const RunId& id);

}  // namespace store
