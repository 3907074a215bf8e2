#include "Stages.h"

#include <algorithm>

namespace bench {

bool Stages::IsAt(const std::string& process, Stage stage) const {
  const auto found = stages_.find(process);
  return found != stages_.end() && found->second == stage;
}

bool Stages::AllAt(Stage stage) const {
  return std::all_of(begin(), end(), [stage](const auto& entry) { return entry.second >= stage; });
}

bool Stages::OthersAt(const std::string& process, Stage stage) const {
  return std::all_of(begin(), end(),
                     [&](const auto& entry) { return entry.first == process || entry.second >= stage; });
}

std::string Stages::LastOnes() const {
  Stage last = Stage::kFullRun;
  for (const auto& [process, stage] : stages_) last = std::min(last, stage);
  std::string names;
  for (const auto& [process, stage] : stages_) {
    if (stage == last) names += " " + process;
  }
  return names;
}

}  // namespace bench
