#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace store {

// Reads up to `size` bytes at the offset of a file; fewer only at the end of the file.
using ReadAt = std::function<std::size_t(std::uint64_t offset, unsigned char* data, std::size_t size)>;

enum class WalState {
  kEmpty,    // no bytes
  kSound,    // can be folded in up to its last commit
  kTorn,     // only the last commit is broken, which may not have been synced: the rest can be folded in
  kDamaged,  // a synced commit is broken and its content unknown: nothing may be folded in
};

struct WalFinding {
  WalState state = WalState::kEmpty;
  std::uint64_t endOfCommits = 0;  // bytes up to the end of the last commit that can be folded in
  std::uint64_t brokenAt = 0;      // torn or damaged: offset of the first broken frame, 0 for the header
  std::uint32_t frameBytes = 0;    // header and page; 0 if the WAL's header is invalid
};

// Judges the WAL of an SQLite database by its bytes alone, by the rules in WalScan.cpp.
WalFinding ScanWal(const ReadAt& read);

}  // namespace store
