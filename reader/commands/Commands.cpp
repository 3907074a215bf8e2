#include "Commands.h"

#include <CLI/CLI.hpp>

#include "Declarations.h"
#include "FindFiles.h"
#include "system/KvGetenv.h"

namespace reader {
namespace {

constexpr Command kCommands[] = {
    {"info", "Tells runs, sources, gaps and losses", DeclareInfo},
    {"gaps", "Lists gaps and losses", DeclareGaps},
    {"dump", "Prints records as text, CSV or JSON lines", DeclareDump},
    {"export", "Writes tracks, records or subtitles for other programs", DeclareExport},
    {"report", "Makes a page that shows a drive", DeclareReport},
    {"state", "Tells every source's value at an instant", DeclareState},
    {"check", "Checks recordings", DeclareCheck},
    {"diff", "Compares two recordings", DeclareDiff},
    {"verify", "Proves by their seals that recordings are unchanged", DeclareVerify},
    {"seal-setup", "Makes the key with which this recorder seals", DeclareSealSetup},
    {"ask", "Asks the running MetadataMgr", DeclareAsk},
    {"follow", "Prints records as they arrive", DeclareFollow},
    {"live", "Shows the shared record of current values", DeclareLive},
    {"complete", "", DeclareComplete},
};

}  // namespace

std::span<const Command> Commands() {
  return kCommands;
}

std::string RecordingsOfThisMachine() {
  const char* root = KvGetenvText("METADATA_ROOT");
  return std::string(root == nullptr ? "/mnt/hd" : root) + "/metadata";
}

std::vector<std::string> Recordings::Paths() const {
  return given.empty() ? std::vector{RecordingsOfThisMachine()} : given;
}

std::vector<Run> Recordings::Find(Messages& messages) const {
  return FindRuns(FindFiles(Paths(), messages), messages);
}

void AddRecordings(CLI::App& app, Recordings& recordings) {
  app.add_option("RECORDING", recordings.given,
                 "files, or directories with recordings [" + RecordingsOfThisMachine() + "]");
}

}  // namespace reader
