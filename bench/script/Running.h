#pragma once

#include <set>
#include <string>

#include "Verbs.h"

namespace bench {

// Which servers run at a line of a drive, as far as the lines before it tell.
class Running {
 public:
  // Notes what a command does. Returns an error when the command needs a server in another state, else "".
  std::string Take(const Command& command);

 private:
  std::string Start(const std::string& server);

  std::set<std::string> gone_;
  std::set<std::string> late_;  // these start by themselves at some time after the start
};

}  // namespace bench
