#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "Sources.h"
#include "items/Item.h"

namespace bench {

// The value of a source: an item that its server publishes, or the payload of a message.
struct Publication {
  const Source* source;
  std::unique_ptr<Item> (*make)();                // holds the value at the start
  std::string (*describe)(const Item& item);      // in the format of Describe.h
  void (*stamp)(Item& item, std::uint32_t tick);  // does nothing for an item without a tick
};

// One publication per source.
std::span<const Publication> Publications();

}  // namespace bench
