#pragma once

#include <tuple>
#include <type_traits>

#include "items/GpsStatusItem.h"

// An item with these values in the order of its fields.
template <typename Item, typename... Values>
Item With(Values... values) {
  Item item;
  const auto set = [&item](auto field, auto value) {
    item.*field = static_cast<std::remove_reference_t<decltype(item.*field)>>(value);
  };
  std::apply([&](auto... fields) { (set(fields, values), ...); }, Item::Fields());
  return item;
}

// A GPS reading at that time of 2024-05-01.
inline GpsStatusItem GpsAt(unsigned int timeOfDayMs, unsigned int tick) {
  GpsStatusItem reading;
  reading.quality = reading.valid = 1;
  reading.utcDate = 20240501;
  reading.utcTimeOfDayMs = timeOfDayMs;
  reading.tick = tick;
  return reading;
}
