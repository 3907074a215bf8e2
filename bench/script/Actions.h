#pragma once

#include <functional>
#include <map>
#include <string>

#include "BenchMessages.h"
#include "Words.h"
#include "ipc/LinxIpc.h"

namespace bench {

// The actions of a process of the bench, by the names of their verbs.
using Action = std::function<Outcome(const Words& arguments)>;
using Actions = std::map<std::string, Action, std::less<>>;

// Performs a command. Fails when the words are not a command or `actions` does not have it.
Outcome Perform(const Actions& actions, const Words& words);

// Performs each BenchMsg_Do from now on and answers it. `actions` must outlive the endpoint.
void ServeActions(LinxIpc& ipc, const Actions& actions);

}  // namespace bench
