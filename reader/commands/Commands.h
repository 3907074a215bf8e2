#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "Runs.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace reader {

enum ExitStatus { kGood = 0, kFinding = 1, kUsage = 2 };

// Runs a command with its parsed options and returns the exit status.
using Action = std::function<int()>;

// A sub-command. `declare` adds its options to the command line and returns its action, which owns the option
// values.
struct Command {
  const char* name;
  const char* summary;
  Action (*declare)(CLI::App& app);
};

// All commands, in the order of the help. A new command needs a row here and a declare function.
std::span<const Command> Commands();

// The recordings that a command reads. Default: RecordingsOfThisMachine.
struct Recordings {
  std::vector<std::string> given;

  std::vector<std::string> Paths() const;
  // Finds the files and joins them to runs. Reports problems.
  std::vector<Run> Find(Messages& messages) const;
};
void AddRecordings(CLI::App& app, Recordings& recordings);

// The directory METADATA_ROOT/metadata, by default /mnt/hd/metadata.
std::string RecordingsOfThisMachine();

}  // namespace reader
