#pragma once

#include <span>
#include <string_view>

#include "system/Servers.h"

namespace bench {

// A value that a server sends to MetadataMgr. Its name identifies it in drives, servers and sent lists.
struct Source {
  e_Process server;
  // An item is published to subscribers; a message goes to MetadataMgr without a subscription.
  enum Kind { kItem, kMessage } kind;
  unsigned int id;  // item id, or message type
  std::string_view name;
};

std::span<const Source> Sources();

// Null when no source has that name.
const Source* FindSource(std::string_view name);

}  // namespace bench
