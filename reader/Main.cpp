#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <map>

#include "Commands.h"
#include "log/LogClient.h"

namespace {

constexpr const char* kFooter =
    "Times are in UTC (ISO 8601) and in ticks, milliseconds since boot. Recordings are never changed.\n"
    "Exit status: 0 good, 1 a finding or a failure, 2 wrong usage. \"metadata COMMAND --help\" tells more.";

int RunCommandLine(int argc, char** argv) {
  CLI::App app("Reads the recordings of MetadataMgr, and asks it.", "metadata");
  app.require_subcommand(1);
  app.set_version_flag("--version", "metadata " MM_VERSION);
  app.footer(kFooter);
  std::map<const CLI::App*, Action> actions;
  for (const Command& command : Commands()) {
    CLI::App* declared = app.add_subcommand(command.name, command.summary);
    actions[declared] = command.declare(*declared);
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kGood : kUsage;
  }
  return actions.at(app.get_subcommands().front())();
}

}  // namespace

int main(int argc, char** argv) {
  // What its libraries log would stand between its own lines.
  LogClient::Instance().Level(0);
  try {
    return RunCommandLine(argc, argv);
  } catch (const std::exception& error) {
    (void)std::fprintf(stderr, "metadata: %s\n", error.what());
    return kFinding;
  }
}
