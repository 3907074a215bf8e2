#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace reader {

// Writes one compact JSON text and sets the commas.
class JsonWriter {
 public:
  explicit JsonWriter(std::string& out) : out_(out) {}

  // Opens an object or an array. `name` is null except for members of an object.
  JsonWriter& Object(const char* name = nullptr) { return Open(name, '{'); }
  JsonWriter& Array(const char* name = nullptr) { return Open(name, '['); }
  void EndObject() { Close('}'); }
  void EndArray() { Close(']'); }
  // Ends the array, the object around it, and the line.
  void EndLine() {
    EndArray();
    EndObject();
    out_ += '\n';
  }

  void Text(const char* name, std::string_view value);
  void Number(const char* name, std::int64_t value);
  void Decimal(const char* name, double value);
  void Flag(const char* name, bool value);
  void Null(const char* name);

 private:
  JsonWriter& Open(const char* name, char bracket);
  void Close(char bracket);
  void Begin(const char* name);

  std::string& out_;
  bool first_ = true;
};

}  // namespace reader
