#pragma once

#include "items/RecordItem.h"

// Crash detection of the accelerometer.
class CrashItem : public RecordItem<CrashItem> {
 public:
  bool crash = false;
  std::uint32_t tick = 0;

  static constexpr auto Fields() { return std::make_tuple(&CrashItem::crash, &CrashItem::tick); }
};
