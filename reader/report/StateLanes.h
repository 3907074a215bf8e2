#pragma once

#include <map>
#include <string>
#include <utility>

#include "Lane.h"
#include "Row.h"

namespace reader {

class JsonWriter;

// The states of a run that are drawn as lanes, in the groups of store::Lanes; the recorder's own come first.
class StateLanes {
 public:
  StateLanes();

  // Call for every record, in order.
  void Add(const Row& row, std::int64_t ms);
  // Drops everything before `ms` except the current states.
  void BeginAt(std::int64_t ms);
  // Writes an array of the groups that have lanes: "name" and "lanes". Each lane has "name" and the members
  // that Lane::Write writes.
  void Write(const char* name, std::int64_t endMs, JsonWriter& json) const;

  // Whether `source` is "recording", "covert" or "crash".
  static bool IsRecorder(std::string_view source);

 private:
  static constexpr std::size_t kMostLanes = 400;
  using Name = std::pair<std::size_t, std::string>;  // group index, name of the lane
  struct Microphone {
    bool present = false;
    bool active = false;
  };

  void AddMicrophone(const Row& row, std::int64_t ms);
  void Set(const Name& name, std::int64_t ms, std::string_view text, Lane::Level level);

  std::map<Name, Lane> lanes_;
  std::map<std::string, Microphone> microphones_;
};

}  // namespace reader
