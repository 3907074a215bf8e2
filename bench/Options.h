#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

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
  std::vector<std::string> recordings;
  std::string output;
};

// Each adds a command. Parsing stores its options in `options`.
CLI::App* AddRun(CLI::App& app, Options& options);
CLI::App* AddCheck(CLI::App& app, Options& options);
CLI::App* AddDrive(CLI::App& app, Options& options);
CLI::App* AddSend(CLI::App& app, Options& options);
CLI::App* AddRole(CLI::App& app, Options& options);

}  // namespace bench
