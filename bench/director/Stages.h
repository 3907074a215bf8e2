#pragma once

#include <map>
#include <string>

namespace bench {

// The start-up stage of each process except the state manager. Killed and missing processes are left out.
class Stages {
 public:
  enum class Stage { kAbsent, kStarted, kFullRun };
  using Map = std::map<std::string, Stage>;

  void Set(const std::string& process, Stage stage) { stages_[process] = stage; }
  // Returns false when the process was not in the map.
  bool Remove(const std::string& process) { return stages_.erase(process) > 0; }

  bool Contains(const std::string& process) const { return stages_.contains(process); }
  bool IsAt(const std::string& process, Stage stage) const;
  bool AllAt(Stage stage) const;
  // Whether all processes except this one have reached the stage.
  bool OthersAt(const std::string& process, Stage stage) const;
  // The processes that the others wait for, each after a blank.
  std::string LastOnes() const;

  Map::const_iterator begin() const { return stages_.begin(); }
  Map::const_iterator end() const { return stages_.end(); }

 private:
  Map stages_;
};

}  // namespace bench
