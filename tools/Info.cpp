#include <CLI/CLI.hpp>
#include <cstdio>

#include "Declarations.h"

namespace {

int Info(const Recordings& recordings) {
  Messages messages;
  for (const Run& run : recordings.Find(messages)) {
    std::printf("run %d\n", run.number);
    for (const std::string& file : run.files) std::printf("  %s\n", file.c_str());
  }
  return messages.Status();
}

}  // namespace

Action DeclareInfo(CLI::App& app) {
  auto recordings = std::make_shared<Recordings>();
  AddRecordings(app, *recordings);
  return [recordings] { return Info(*recordings); };
}
