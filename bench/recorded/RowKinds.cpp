#include "RowKinds.h"

#include <utility>

namespace bench {

std::string LineValues::PartOf(const char* verb, std::int64_t part, const std::string& value, bool last) {
  const std::string name = std::string(verb) + " " + std::to_string(part);
  const bool isNew = std::exchange(parts[name], value) != value;
  if (isNew || (last && changed.empty())) {
    changed.append(changed.empty() ? "" : "\n").append(name).append(" ").append(value);
  }
  return last ? std::exchange(changed, {}) : "";
}

const RowKind* FindRowKind(std::string_view table) {
  for (const auto kinds : {StateRows(), ReadingRows(), VideoRows(), ConfigurationRows()}) {
    for (const RowKind& kind : kinds) {
      if (kind.table == table) return &kind;
    }
  }
  return nullptr;
}

std::uint32_t TickOf(const Row& row) {
  return static_cast<std::uint32_t>(row.hasSenderTick ? row.senderTick : row.tick);
}

}  // namespace bench
