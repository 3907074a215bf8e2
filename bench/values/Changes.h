#pragma once

#include <span>
#include <string>

#include "Sources.h"
#include "Words.h"
#include "items/Item.h"

namespace bench {

// A verb that changes the value of a source and sends it.
struct Change {
  const char* verb;
  const Source* source;
  void (*apply)(Item& item, const Words& arguments);  // null: the event has no value
  bool numbered = false;  // adds the first argument, a number, to the id of `source`

  unsigned int Id(const Words& arguments) const {
    return source->id + (numbered ? NumberOf(arguments[0]) : 0);
  }
};

std::span<const Change> Changes();

}  // namespace bench
