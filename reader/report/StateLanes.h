#pragma once

#include <map>
#include <string>
#include <utility>

#include "Lane.h"
#include "Row.h"

namespace reader {

class JsonWriter;

// The states of a run that are drawn as lanes, by group.
class StateLanes {
 public:
  StateLanes();

  // Of every record, in their order.
  void Add(const Row& row, std::int64_t ms);
  // Forgets what was before, other than the states in force.
  void BeginAt(std::int64_t ms);
  // An array of the groups in which something is, each with "name" and "lanes", those with "name" and
  // what a Lane writes.
  void Write(const char* name, std::int64_t endMs, JsonWriter& json) const;

  // Whether a source is one of "recording", "covert" and "crash".
  static bool IsRecorder(std::string_view source);

 private:
  static constexpr std::size_t kMostLanes = 400;
  using Name = std::pair<std::size_t, std::string>;  // number of the group, name in it
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
