#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "PlayedRuns.h"
#include "RunOptions.h"
#include "Words.h"

namespace bench {

// The options of the command line.
struct Options {
  RunOptions run;
  std::string out = "out";
  std::string drive;
  std::string nmea;
  std::string gpsd;
  Words words;
  std::string role;
  std::string output;
  ReplayOptions replay;
  bool exact = false;  // the drive
  std::string ticks;   // keep, move, or empty
};

// Each adds a command. Parsing stores its options in `options`.
CLI::App* AddRun(CLI::App& app, Options& options);
CLI::App* AddCheck(CLI::App& app, Options& options);
CLI::App* AddDrive(CLI::App& app, Options& options);
CLI::App* AddReplay(CLI::App& app, Options& options);
CLI::App* AddSend(CLI::App& app, Options& options);
CLI::App* AddRole(CLI::App& app, Options& options);

// Adds the option that chooses a run.
void AddRunNumber(CLI::App* app, Options& options);
// Adds the options that choose a part of a recording.
std::vector<CLI::Option*> AddStretch(CLI::App* app, Options& options);
// Adds the options that replay and run share.
void AddProcesses(CLI::App* run, Options& options);
// Derives options of a replay from others. Returns false and sets `error` if they contradict each other.
bool CompleteReplay(Options& options, std::string& error);

}  // namespace bench
