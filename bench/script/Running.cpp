#include "Running.h"

namespace bench {

std::string Running::Take(const Command& command) {
  const std::string verb = NameOf(*command.verb);
  const std::string server = command.arguments.empty() ? "" : command.arguments[0];
  if (verb == "missing") {
    const bool comesLater = command.arguments.size() > 1;
    (comesLater ? late_ : gone_).insert(server);
    return {};
  }
  if (verb == "kill") {
    gone_.insert(server);
    return {};
  }
  if (verb == "start") return Start(server);
  const bool needsServer = verb == "mute" || verb == "wake";
  const std::string performer = needsServer ? server : PerformerOf(command);
  return gone_.contains(performer) ? performer + " does not run then" : "";
}

std::string Running::Start(const std::string& server) {
  if (late_.erase(server) == 0 && gone_.erase(server) == 0) return Quoted(server) + " runs already";
  return {};
}

}  // namespace bench
