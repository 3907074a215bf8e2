#pragma once

#include <cstddef>
#include <cstdint>

// Where the store takes the time that TimerTick does not tell.
class StoreClock {
 public:
  virtual ~StoreClock() = default;

  // Milliseconds since boot in 32 bits, the clock of the ticks handed to TimerTick; 0xFFFFFFFF when
  // it cannot be read.
  virtual unsigned int TickMs() const = 0;

  // Milliseconds since 1970-01-01T00:00:00Z by the system's wall clock.
  virtual std::int64_t UtcMs() const = 0;
};

// What tests and tools may choose; the defaults are the ones in use.
struct StoreOptions {
  // Bytes of a recording file, with its log, at which the next one is begun. A smaller value means
  // more files, each of which begins with a full state. At least 80 KiB, whatever is said.
  std::uint64_t maxFileBytes = std::uint64_t{256} << 20;

  // Bytes of records kept in memory while they cannot be written; beyond it the oldest go.
  std::size_t maxPendingBytes = std::size_t{4} << 20;

  // Null: the system's clocks. Must outlive the store.
  const StoreClock* clock = nullptr;
};
