#include "Actions.h"

#include "Verbs.h"

namespace bench {

namespace {

void DoHandler(LinxIpc* ipc, void* context) {
  const IpcMessage& message = ipc->CurrentMessage();
  const std::string asker = message.GetSender();
  Answer(*ipc, Perform(*static_cast<const Actions*>(context), SplitWords(TextOf(message))), asker);
}

}  // namespace

Outcome Perform(const Actions& actions, const Words& words) {
  Command command;
  std::string error;
  if (!ParseCommand(words, command, error)) return {false, error};
  const auto action = actions.find(NameOf(*command.verb));
  if (action == actions.end()) return {false, "this process does not do that"};
  return action->second(command.arguments);
}

void ServeActions(LinxIpc& ipc, const Actions& actions) {
  ipc.RegisterHandler(BenchMsg_Do, DoHandler, const_cast<Actions*>(&actions));
}

}  // namespace bench
