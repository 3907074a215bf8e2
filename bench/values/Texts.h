#pragma once

#include <string>

namespace bench {

// Sets an item of two texts.
template <typename T>
void SetTexts(T& item, const std::string& first, const std::string& second) {
  const auto [firstField, secondField] = T::Fields();
  item.*firstField = first;
  item.*secondField = second;
}

}  // namespace bench
