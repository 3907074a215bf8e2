#pragma once

#include <string>
#include <vector>

#include "Options.h"

namespace bench {

enum ExitStatus { kGood = 0, kFailed = 1, kUsage = 2 };

// Prints errors on standard error. Returns the exit status for them.
int ReportErrors(const std::vector<std::string>& errors);

// Removes the receiver from the environment: the GPS process then works like the other servers.
void ForgetReceiver();

// The commands about recordings. Each returns the exit status.
int PlayReplay(Options& options);
int WriteDrive(const Options& options);

}  // namespace bench
