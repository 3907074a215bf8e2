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
  std::unique_ptr<Item> (*make)();                // with the value at the start
  std::string (*describe)(const Item& item);      // as Describe.h says
  void (*stamp)(Item& item, std::uint32_t tick);  // nothing where the item has no tick
};

// One for each source.
std::span<const Publication> Publications();

}  // namespace bench
