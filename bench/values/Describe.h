#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "StreamingLvsStateItem.h"
#include "items/Item.h"
#include "items/MicStatusResponse.h"
#include "items/RecordItem.h"
#include "items/SystickItem.h"

namespace bench {

// The values of an item in wire order, each after a blank. Texts have "_" in place of blanks; an empty text
// is "_".

template <field::Number T>
std::string Describe(const T& value) {
  return " " + std::to_string(static_cast<std::int64_t>(value));
}

inline std::string Describe(std::string_view text) {
  std::string word(text.empty() ? "_" : text);
  for (char& c : word) c = c == ' ' ? '_' : c;
  return " " + word;
}

template <typename T>
concept HasFields = requires {
  T::Fields();
};

template <HasFields T>
std::string Describe(const T& record);

template <typename T, std::size_t N>
std::string Describe(const std::array<T, N>& elements) {
  std::string text;
  for (const T& element : elements) text += Describe(element);
  return text;
}

template <HasFields T>
std::string Describe(const T& record) {
  return std::apply([&](auto... member) { return (std::string() + ... + Describe(record.*member)); },
                    T::Fields());
}

inline std::string Describe(const SystickItem& item) {
  return Describe(item.Tick());
}

// The entries, then the tick.
inline std::string Describe(const MicStatusResponse& status) {
  std::string text;
  for (const MicStatusResponse::Entry& entry : status) text += Describe(entry);
  return text + Describe(status.tick);
}

inline std::string Describe(const ExternalMgrApi::StreamingLvsStateItem& item) {
  return Describe(item.enabled.Value()) + Describe(item.highQuality.Value()) + Describe(item.camera.Value()) +
         Describe(item.address.Value()) + Describe(item.port.Value());
}

}  // namespace bench
