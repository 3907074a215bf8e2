#pragma once

#include <functional>
#include <map>
#include <string>

#include "BenchMessages.h"
#include "Words.h"
#include "ipc/LinxIpc.h"

namespace bench {

// The actions of a process of the bench, by verb.
using Action = std::function<Outcome(const Words& arguments)>;
using Actions = std::map<std::string, Action, std::less<>>;

// Performs a command. Fails when the words are not a command, or the command is not in `actions`.
Outcome Perform(const Actions& actions, const Words& words);

// Performs and answers each BenchMsg_Do from now on. `actions` must outlive the endpoint.
void ServeActions(LinxIpc& ipc, const Actions& actions);

}  // namespace bench
