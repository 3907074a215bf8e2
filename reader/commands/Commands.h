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

// What runs a command, with the options that were given; the exit status.
using Action = std::function<int()>;

// A sub-command. `declare` adds its options to the command line and returns its action; what the options
// fill lives in the action.
struct Command {
  const char* name;
  const char* summary;
  Action (*declare)(CLI::App& app);
};

// All of them, in the order of the help. A new one is a row here and a declare function.
std::span<const Command> Commands();

// The recordings that a command is to read. Default: the directory in which this machine's are.
struct Recordings {
  std::vector<std::string> given;

  std::vector<std::string> Paths() const;
  // The files, joined to runs. What is not as it should be is said.
  std::vector<Run> Find(Messages& messages) const;
};
void AddRecordings(CLI::App& app, Recordings& recordings);

// The directory METADATA_ROOT/metadata, by default /mnt/hd/metadata.
std::string RecordingsOfThisMachine();

}  // namespace reader
