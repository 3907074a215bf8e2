#include "RunId.h"

#include <sys/random.h>

namespace store {

RunId NewRunId() {
  RunId id{};
  constexpr auto kWhole = static_cast<ssize_t>(std::tuple_size_v<RunId>);
  // Early after boot the kernel's random numbers may not be secure yet. They still tell runs apart.
  if (getrandom(id.data(), id.size(), GRND_NONBLOCK) == kWhole) return id;
  return getrandom(id.data(), id.size(), GRND_INSECURE) == kWhole ? id : RunId{};
}

std::string BlobSql(const RunId& id) {
  constexpr char kHex[] = "0123456789abcdef";
  std::string sql = "x'";
  for (const unsigned char byte : id) sql.append({kHex[byte >> 4], kHex[byte & 15]});
  return sql + "'";
}

}  // namespace store
