#pragma once

#include <set>
#include <string>

#include "Verbs.h"

namespace bench {

// Keeps which servers run at each line of a drive.
class Running {
 public:
  // Applies a command. Returns "", or an error when its server does not run, or already runs at a "start".
  std::string Take(const Command& command);

 private:
  std::string Start(const std::string& server);

  std::set<std::string> gone_;
  std::set<std::string> late_;  // the bench starts these later
};

}  // namespace bench
