#pragma once

#include <string>
#include <string_view>

#include "Row.h"

// The values of a row as words of a drive and as fields of an item.

namespace bench {

inline std::string Number(const reader::Row& row, std::string_view name) {
  return std::to_string(row.Number(name));
}

inline std::string Switch(bool on) {
  return on ? "on" : "off";
}

inline std::string Resolution(const reader::Row& row) {
  return Number(row, "width") + "x" + Number(row, "height") + " " + Number(row, "frames_per_second") + " " +
         Number(row, "bit_rate_kbps");
}

// Damaged recordings may hold any number.
template <typename T>
void Set(T& field, const reader::Row& row, std::string_view name) {
  field = static_cast<T>(row.Number(name));
}

template <typename Quality>
void SetQuality(Quality& quality, const reader::Row& row) {
  Set(quality.widthPixels, row, "width");
  Set(quality.heightPixels, row, "height");
  Set(quality.framesPerSecond, row, "frames_per_second");
  Set(quality.bitRateKbps, row, "bit_rate_kbps");
}

}  // namespace bench
