// Widths of types that the sources need on every machine.

#include <sys/types.h>

#include <atomic>
#include <cstdint>
#include <ctime>

static_assert(sizeof(time_t) == 8, "the year 2038 comes; see cmake/Options.cmake");
static_assert(sizeof(off_t) == 8, "recordings are copied to files of any size");
static_assert(std::atomic<std::uint32_t>::is_always_lock_free,
              "other processes read the shared record's counter");
