#pragma once

#include <array>
#include <string>

namespace store {

// Identifies the files of one run, unique across recorders. Zeros: unknown.
using RunId = std::array<unsigned char, 16>;

// Random bytes from the kernel. Never blocks; zeros if the kernel has none.
RunId NewRunId();

// The id as a BLOB in SQL: "x'0f...'".
std::string BlobSql(const RunId& id);

}  // namespace store
