#include "ItemsOfRows.h"

#include <algorithm>

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

struct ItemsOfRows::Table {
  std::string_view name;
  Make make;
};

const ItemsOfRows::Table ItemsOfRows::kTables[] = {
    {"state", &ItemsOfRows::State},
    {"gps_state", &ItemsOfRows::GpsState},
    {"gps", &ItemsOfRows::Gps},
    {"radar_state", &ItemsOfRows::RadarState},
    {"radar", &ItemsOfRows::Radar},
    {"speed", &ItemsOfRows::Speed},
    {"mic_present", &ItemsOfRows::MicPresent},
    {"mic_active", &ItemsOfRows::MicActive},
    {"temperature", &ItemsOfRows::Temperature},
    {"camera", &ItemsOfRows::Camera},
    {"video_stream", &ItemsOfRows::VideoStream},
    {"stream_quality", &ItemsOfRows::Quality},
    {"live_stream", &ItemsOfRows::LiveStream},
    {"vehicle", &ItemsOfRows::Vehicle},
    {"system_info", &ItemsOfRows::SystemInfo},
    {"department", &ItemsOfRows::Department},
    {"officer", &ItemsOfRows::Officer},
    {"recording_settings", &ItemsOfRows::RecordingSettings},
};

ItemsOfRows::ItemsOfRows() {
  for (const Publication& publication : Publications()) {
    values_[publication.source] = {&publication, publication.make()};
  }
}

std::uint32_t ItemsOfRows::TickOf(const Row& row) {
  return static_cast<std::uint32_t>(row.hasSenderTick ? row.senderTick : row.tick);
}

std::uint32_t ItemsOfRows::Moved(std::uint32_t tick, std::uint32_t shiftMs) {
  return tick == 0 || tick == kNoTick ? tick : tick + shiftMs;
}

const Source* ItemsOfRows::Take(const Row& row) {
  const auto* table = std::find_if(std::begin(kTables), std::end(kTables),
                                   [&row](const Table& any) { return any.name == row.table; });
  const Source* source = table == std::end(kTables) ? nullptr : (this->*table->make)(row);
  if (source == nullptr) return nullptr;
  Value& value = values_.at(source);
  value.tick = TickOf(row);
  value.taken = true;
  return source;
}

Words ItemsOfRows::Event(const Source& source, std::uint32_t shiftMs) {
  Value& value = values_.at(&source);
  value.publication->stamp(*value.item, Moved(value.tick, shiftMs));
  return {"payload", ProcessName(source.server), std::string(source.name), HexOf(*value.item)};
}

std::vector<Words> ItemsOfRows::FirstValues(std::uint32_t shiftMs) {
  MicStatusResponse all;
  for (const auto& [number, entry] : mics_) all.Add(entry);
  if (!mics_.empty()) At<MicStatusResponse>(SourceNamed("mic")) = all;
  auto& inputs = At<FpgaExternalEventItem>(SourceNamed("input"));
  inputs.changedMask = FpgaExternalEventItem::kAllInputs;
  std::vector<Words> commands;
  for (const auto& [source, value] : values_) {
    if (!value.taken || source->kind == Source::kMessage || source->server == e_Process_StateMgr) continue;
    commands.push_back(Event(*source, shiftMs));
  }
  return commands;
}

}  // namespace bench
