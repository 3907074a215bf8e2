#include "Send.h"

#include <unistd.h>

#include <cstdio>
#include <string>

#include "BenchMessages.h"
#include "Processes.h"

namespace bench {

// The bench may first wait for the answer to a line of the drive, then for the answer to this command.
bool SendToBench(const Words& words) {
  constexpr int kTimeoutMs = 4 * kAnswerTimeoutMs;
  LinxIpc ipc("Send-" + std::to_string(getpid()));
  Outcome outcome{false, "cannot open an endpoint: is there a bench?"};
  if (ipc.Init() == 0) outcome = Ask(ipc, kBenchName, words, kTimeoutMs);
  (void)std::fprintf(outcome.ok ? stdout : stderr, "%s: %s\n", JoinWords(words).c_str(),
                     outcome.text.c_str());
  return outcome.ok;
}

}  // namespace bench
