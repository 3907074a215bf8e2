#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <map>

#include "Commands.h"
#include "Encode.h"
#include "log/LogClient.h"

namespace reader {
namespace {

constexpr const char* kFooter =
    "Times are in UTC (ISO 8601) and in ticks, milliseconds since boot. Recordings are never changed.\n"
    "Exit status: 0 good, 1 a finding or a failure, 2 wrong usage. \"metadata COMMAND --help\" tells more.";

// Names an unknown command word and lists the commands; CLI11 would only report a missing command.
bool SaysUnknownCommand(const CLI::App* app, int argc, char** argv) {
  for (int i = 1; i < argc && argv[i][0] != '-'; ++i) {
    std::string names;
    const CLI::App* next = nullptr;
    for (const CLI::App* sub : app->get_subcommands([](const CLI::App*) { return true; })) {
      if (sub->check_name(argv[i])) next = sub;
      if (!sub->get_group().empty()) names += (names.empty() ? "" : ", ") + sub->get_name();
    }
    if (names.empty()) return false;
    if (next == nullptr) {
      (void)std::fprintf(stderr, "metadata: '%s' is not a command; commands are %s\n",
                         Printable(argv[i]).c_str(), names.c_str());
      return true;
    }
    app = next;
  }
  return false;
}

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
  if (SaysUnknownCommand(&app, argc, argv)) return kUsage;
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kGood : kUsage;
  }
  return actions.at(app.get_subcommands().front())();
}

}  // namespace
}  // namespace reader

int main(int argc, char** argv) {
  // Silences the libraries' log: it would mix with this program's output.
  LogClient::Instance().Level(0);
  try {
    return reader::RunCommandLine(argc, argv);
  } catch (const std::exception& error) {
    (void)std::fprintf(stderr, "metadata: %s\n", error.what());
    return reader::kFinding;
  }
}
