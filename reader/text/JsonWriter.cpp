#include "JsonWriter.h"

#include <charconv>

#include "Encode.h"

namespace reader {

void JsonWriter::Begin(const char* name) {
  if (!first_) out_ += ',';
  first_ = false;
  if (name == nullptr) return;
  AppendJson(name, out_);
  out_ += ':';
}

JsonWriter& JsonWriter::Open(const char* name, char bracket) {
  Begin(name);
  out_ += bracket;
  first_ = true;
  return *this;
}

void JsonWriter::Close(char bracket) {
  out_ += bracket;
  first_ = false;
}

void JsonWriter::Text(const char* name, std::string_view value) {
  Begin(name);
  AppendJson(value, out_);
}

void JsonWriter::Number(const char* name, std::int64_t value) {
  Begin(name);
  AppendNumber(value, out_);
}

void JsonWriter::Decimal(const char* name, double value) {
  Begin(name);
  char digits[32];
  const auto [end, error] = std::to_chars(digits, digits + sizeof digits, value);
  out_.append(digits, static_cast<std::size_t>(end - digits));
}

void JsonWriter::Flag(const char* name, bool value) {
  Begin(name);
  out_ += value ? "true" : "false";
}

void JsonWriter::Null(const char* name) {
  Begin(name);
  out_ += "null";
}

}  // namespace reader
