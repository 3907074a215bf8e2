#pragma once

#include <map>
#include <string>

namespace bench {

// How far each process of the bench except the state manager is on its way to full run. A process that was
// killed or is missing does not take part.
class Stages {
 public:
  enum class Stage { kAbsent, kStarted, kFullRun };
  using Map = std::map<std::string, Stage>;

  void Set(const std::string& process, Stage stage) { stages_[process] = stage; }
  // False when it did not take part.
  bool Remove(const std::string& process) { return stages_.erase(process) > 0; }

  bool Contains(const std::string& process) const { return stages_.contains(process); }
  bool IsAt(const std::string& process, Stage stage) const;
  bool AllAt(Stage stage) const;
  // Whether all except this process have reached a stage.
  bool OthersAt(const std::string& process, Stage stage) const;
  // The processes for which the others wait, each after a blank.
  std::string LastOnes() const;

  Map::const_iterator begin() const { return stages_.begin(); }
  Map::const_iterator end() const { return stages_.end(); }

 private:
  Map stages_;
};

}  // namespace bench
