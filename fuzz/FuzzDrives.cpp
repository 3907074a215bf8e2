// Parses any text as a drive. Errors must be printable lines, and every command without an error must be
// performable.

#include <algorithm>
#include <string>

#include "Changes.h"
#include "Drive.h"
#include "Input.h"
#include "Publications.h"
#include "Verbs.h"

namespace bench {

namespace {

bool IsPrintable(const std::string& line) {
  return std::none_of(line.begin(), line.end(),
                      [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; });
}

void Apply(const Change& change, const Words& arguments) {
  const Source& source = *change.source;
  for (const Publication& row : Publications()) {
    if (row.source->server != source.server || row.source->kind != source.kind ||
        row.source->id != change.Id(arguments)) {
      continue;
    }
    const auto item = row.make();
    change.apply(*item, arguments);
    row.stamp(*item, 1);
    std::string bytes(item->Size(), '\0');
    (void)item->Encode(reinterpret_cast<unsigned char*>(bytes.data()));
    Require(!row.describe(*item).empty());
    return;
  }
  Require(false);  // the server has no such source
}

void Perform(const Command& command) {
  Require(!PerformerOf(command).empty());
  const std::string name = NameOf(*command.verb);
  for (const Change& change : Changes()) {
    if (name == change.verb && change.apply != nullptr) Apply(change, command.arguments);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Drive drive;
  const auto errors = ParseDrive("any", {reinterpret_cast<const char*>(data), size}, drive);
  for (const std::string& error : errors) Require(error.starts_with("any:") && IsPrintable(error));
  for (const Command& command : drive.before) Perform(command);
  auto at = std::chrono::milliseconds(0);
  for (const DriveLine& line : drive.lines) {
    Require(line.at >= at);
    at = line.at;
    Perform(line.command);
  }
  return 0;
}

}  // namespace bench
