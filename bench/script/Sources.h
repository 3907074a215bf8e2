#pragma once

#include <span>
#include <string_view>

#include "system/Process.h"

// What the servers around MetadataMgr tell it. A drive, the servers and the lists of what was sent
// know a source by its name.
struct Source {
  e_Process server;
  // An item is published to subscribers; a message goes to MetadataMgr without a subscription.
  enum Kind { kItem, kMessage } kind;
  unsigned int id;  // of the item, or the message's type
  std::string_view name;
};

std::span<const Source> Sources();

// Null when there is none of that name.
const Source* FindSource(std::string_view name);
