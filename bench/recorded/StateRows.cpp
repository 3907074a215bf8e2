#include "ArgumentTypes.h"
#include "RowFields.h"
#include "RowKinds.h"
#include "SourceTable.h"
#include "items/CrashItem.h"
#include "items/FpgaExternalEventItem.h"

namespace bench {

using reader::EventKind;

namespace {

std::string LineOfState(LineValues& /*values*/, const Row& row) {
  const bool active = row.Number("active") != 0;
  if (row.source == "recording") {
    if (row.event == EventKind::kInitial) return active ? "direct record start" : "";
    return active ? "record start" : "record stop";
  }
  if (row.source == "covert") return "covert " + Switch(active);
  if (row.source == "crash") return "crash " + Switch(active);
  if (row.source == "doorOpen") return "input door " + Switch(active);
  for (const char* input : {"lights", "brakes", "siren", "aux", "ignition"}) {
    if (row.source == input) return "input " + std::string(input) + " " + Switch(active);
  }
  return {};
}

const Source* ItemOfState(ItemValues& values, const Row& row) {
  const bool active = row.Number("active") != 0;
  if (row.source == "recording") {
    values.recording = active;
    return active ? SourceNamed("record-start") : SourceNamed("record-stop");
  }
  if (row.source == "covert") return active ? SourceNamed("covert-on") : SourceNamed("covert-off");
  if (row.source == "crash") {
    values.At<CrashItem>(SourceNamed("crash")).crash = active;
    return SourceNamed("crash");
  }
  const std::uint32_t bit = InputBit(row.source == "doorOpen" ? "door" : std::string(row.source));
  if (bit == 0) return nullptr;
  auto& inputs = values.At<FpgaExternalEventItem>(SourceNamed("input"));
  inputs.changedMask = bit;
  inputs.inputLevels = active ? inputs.inputLevels | bit : inputs.inputLevels & ~bit;
  return SourceNamed("input");
}

std::string LineOfBookmark(LineValues& /*values*/, const Row& /*row*/) {
  return "bookmark";
}

// The director sends bookmarks, not a server.
const Source* ItemOfBookmark(ItemValues& /*values*/, const Row& /*row*/) {
  return nullptr;
}

constexpr RowKind kStateRows[] = {
    {"state", LineOfState, ItemOfState},
    {"bookmark", LineOfBookmark, ItemOfBookmark},
};

}  // namespace

std::span<const RowKind> StateRows() {
  return kStateRows;
}

}  // namespace bench
