#include "Sources.h"

#include <algorithm>

#include "SourceTable.h"

namespace bench {

std::span<const Source> Sources() {
  return kSources;
}

const Source* FindSource(std::string_view name) {
  const auto* found = std::find_if(std::begin(kSources), std::end(kSources),
                                   [name](const Source& source) { return source.name == name; });
  return found == std::end(kSources) ? nullptr : found;
}

}  // namespace bench
