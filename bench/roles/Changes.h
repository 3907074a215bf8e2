#pragma once

#include <span>
#include <string>

#include "Sources.h"
#include "Words.h"
#include "items/Item.h"

namespace bench {

// A verb that changes the value of a source, which is then sent.
struct Change {
  const char* verb;
  const Source* source;
  void (*apply)(Item& item, const Words& arguments);  // null: an event without a value
  bool numbered = false;  // the first argument, a number, is added to the id of `source`

  unsigned int Id(const Words& arguments) const {
    return source->id + (numbered ? NumberOf(arguments[0]) : 0);
  }
};

std::span<const Change> Changes();

}  // namespace bench
