#pragma once

#include <functional>
#include <span>

#include "Sources.h"
#include "items/Item.h"

namespace bench {

// Puts the reading for a time of the drive into an item. The times must not go back.
using Advance = std::function<void(Item& item, double driveSeconds)>;

// A verb that sets how many readings are sent per second of the drive.
struct Reading {
  const char* verb;
  const Source* source;
  Advance (*begin)();
};

std::span<const Reading> Readings();

}  // namespace bench
