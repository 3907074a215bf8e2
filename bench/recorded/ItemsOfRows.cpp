#include "ItemsOfRows.h"

#include "Processes.h"
#include "SourceTable.h"
#include "items/FpgaExternalEventItem.h"

namespace bench {

namespace {

constexpr std::uint32_t kNoTick = 0xFFFFFFFF;

std::string HexOf(const Item& item) {
  constexpr const char* kDigits = "0123456789abcdef";
  IpcMessage message;
  (void)message.Allocate(1, item.Size(), nullptr);
  (void)item.EncodeMsg(message);
  std::string hex;
  for (std::size_t i = 0; i < message.Size(); ++i) {
    hex += kDigits[message.DataPtr()[i] >> 4];
    hex += kDigits[message.DataPtr()[i] & 0xF];
  }
  return hex;
}

}  // namespace

ItemsOfRows::ItemsOfRows() {
  for (const Publication& publication : Publications()) {
    values_.sources[publication.source] = {&publication, publication.make()};
  }
}

std::uint32_t ItemsOfRows::Moved(std::uint32_t tick, std::uint32_t shiftMs) {
  return tick == 0 || tick == kNoTick ? tick : tick + shiftMs;
}

const Source* ItemsOfRows::Take(const Row& row) {
  const RowKind* kind = FindRowKind(row.table);
  const Source* source = kind == nullptr ? nullptr : kind->item(values_, row);
  if (source == nullptr) return nullptr;
  ItemValues::Value& value = values_.sources.at(source);
  value.tick = TickOf(row);
  value.taken = true;
  return source;
}

Words ItemsOfRows::Event(const Source& source, std::uint32_t shiftMs) {
  ItemValues::Value& value = values_.sources.at(&source);
  value.publication->stamp(*value.item, Moved(value.tick, shiftMs));
  return {"payload", ProcessName(source.server), std::string(source.name), HexOf(*value.item)};
}

std::vector<Words> ItemsOfRows::FirstValues(std::uint32_t shiftMs) {
  MicStatusResponse all;
  for (const auto& [number, entry] : values_.mics) all.Add(entry);
  if (!values_.mics.empty()) values_.At<MicStatusResponse>(SourceNamed("mic")) = all;
  auto& inputs = values_.At<FpgaExternalEventItem>(SourceNamed("input"));
  inputs.changedMask = FpgaExternalEventItem::kAllInputs;
  std::vector<Words> commands;
  for (const auto& [source, value] : values_.sources) {
    if (!value.taken || source->kind == Source::kMessage || source->server == e_Process_StateMgr) continue;
    commands.push_back(Event(*source, shiftMs));
  }
  return commands;
}

}  // namespace bench
