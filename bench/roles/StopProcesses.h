#pragma once

#include <functional>
#include <string>

#include "BenchMessages.h"
#include "Words.h"
#include "ipc/LinxIpc.h"

namespace bench {

using Tell = std::function<void(News news, const std::string& process, const std::string& text)>;

// Asks processes to shut down and waits for all answers, at most `timeoutMs` in total. Calls `tell` once per
// process, with kStopped or kSilent.
void StopProcesses(LinxIpc& ipc, Words processes, int timeoutMs, const Tell& tell);

}  // namespace bench
