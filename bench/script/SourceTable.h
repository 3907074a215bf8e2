#pragma once

#include <algorithm>
#include <array>

#include "Sources.h"
#include "system/Messages.h"
#include "system/Servers.h"

namespace bench {

// Sources that are no items. A source needs a row here or in servers::kAll, and one each in Publications.cpp,
// Changes.cpp and VerbTable.cpp.
inline constexpr Source kMessageSources[] = {
    {e_Process_MicMgr, Source::kMessage, MetadataMgrMsg_MicState, "mic-message"},
    {e_Process_VideoMgr, Source::kMessage, MetadataMgrMsg_VideoStreamState, "stream"},
    {e_Process_VideoMgr, Source::kMessage, MetadataMgrMsg_CameraState, "camera"},
};

consteval std::size_t CountSources() {
  std::size_t count = std::size(kMessageSources);
  for (const ServerRow& server : servers::kAll) count += server.items.size();
  return count;
}

consteval std::array<Source, CountSources()> AllSources() {
  std::array<Source, CountSources()> all{};
  Source* next = std::copy(std::begin(kMessageSources), std::end(kMessageSources), all.data());
  for (const ServerRow& server : servers::kAll) {
    for (const ServedItem& item : server.items) *next++ = {server.process, Source::kItem, item.id, item.name};
  }
  return all;
}

inline constexpr auto kSources = AllSources();

// The source of that name. An unknown name does not compile.
consteval const Source* SourceNamed(std::string_view name) {
  const Source* source = kSources.data();
  while (source->name != name) ++source;
  return source;
}

}  // namespace bench
