#include "Row.h"

#include <algorithm>

namespace reader {

const Field* Row::Find(std::string_view name) const {
  const auto found =
      std::find_if(fields.begin(), fields.end(), [name](const Field& field) { return field.name == name; });
  return found == fields.end() ? nullptr : &*found;
}

std::int64_t Row::Number(std::string_view name, std::int64_t otherwise) const {
  const Field* field = Find(name);
  return field == nullptr || field->isText ? otherwise : field->number;
}

std::string_view Row::Text(std::string_view name) const {
  const Field* field = Find(name);
  return field == nullptr || !field->isText ? std::string_view() : field->text;
}

const char* EventName(EventKind event) {
  switch (event) {
    case EventKind::kInitial:
      return "initial";
    case EventKind::kEvent:
      return "event";
    case EventKind::kRestated:
      return "restated";
  }
  return "unknown";
}

}  // namespace reader
