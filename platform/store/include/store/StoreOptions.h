#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

// The clocks that the store reads itself, beside TimerTick.
class StoreClock {
 public:
  virtual ~StoreClock() = default;

  // Milliseconds since boot in 32 bits, from the same clock as TimerTick's; 0xFFFFFFFF if it cannot be read.
  virtual unsigned int TickMs() const = 0;

  // Milliseconds since 1970-01-01T00:00:00Z by the system's wall clock.
  virtual std::int64_t UtcMs() const = 0;
};

// Options for tests and tools. The process uses the defaults.
struct StoreOptions {
  // Bytes of a recording, including its WAL, at which the next one begins. A smaller value means more files,
  // each beginning with a full state. Values below 80 KiB count as 80 KiB.
  std::uint64_t maxFileBytes = std::uint64_t{256} << 20;

  // Bytes of records kept in memory while they cannot be written. Beyond that the oldest are dropped.
  std::size_t maxPendingBytes = std::size_t{4} << 20;

  // The seals' key (docs/seal.md). Empty: METADATA_KEY, or else /var/lib/metadatamgr/seal.key. Without the
  // file the seals prove nothing.
  std::string keyFile;

  // The id of the run. None: random.
  std::optional<std::array<unsigned char, 16>> runId;

  // Null: the system's clocks. Must outlive the store.
  const StoreClock* clock = nullptr;
};
