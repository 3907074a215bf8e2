#pragma once

#include "Commands.h"

namespace reader {

// The declare functions of all commands, each defined in its command's source.
Action DeclareInfo(CLI::App& app);
Action DeclareDump(CLI::App& app);
Action DeclareExport(CLI::App& app);
Action DeclareReport(CLI::App& app);
Action DeclareGaps(CLI::App& app);
Action DeclareState(CLI::App& app);
Action DeclareCheck(CLI::App& app);
Action DeclareDiff(CLI::App& app);
Action DeclareAsk(CLI::App& app);
Action DeclareFollow(CLI::App& app);
Action DeclareLive(CLI::App& app);
Action DeclareVerify(CLI::App& app);
Action DeclareSealSetup(CLI::App& app);
Action DeclareComplete(CLI::App& app);

}  // namespace reader
