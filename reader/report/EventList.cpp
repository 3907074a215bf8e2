#include "EventList.h"

#include <algorithm>
#include <array>

#include "Clipped.h"
#include "JsonWriter.h"
#include "StateLanes.h"

namespace reader {
namespace {

constexpr std::array<std::string_view, 6> kTables{"bookmark",   "string",       "loss",
                                                  "log_pinned", "previous_run", "run_end"};

constexpr std::size_t kNameBytes = 60;
constexpr std::size_t kTextBytes = 300;

bool IsSignal(const Row& row) {
  return row.table == "state" && (StateLanes::IsRecorder(row.source) || row.source == "system");
}

}  // namespace

void EventList::Follow(const Row& row) {
  isNews_ = std::find(kTables.begin(), kTables.end(), row.table) != kTables.end();
  if (IsSignal(row)) {
    // "Off" is an event only if the signal was on.
    bool& active = active_[std::string(row.source)];
    isNews_ = active || row.Number("active") != 0;
    active = row.Number("active") != 0;
  }
  isNews_ = isNews_ && row.event == EventKind::kEvent;
  if (isNews_ && row.table == "bookmark") ++bookmarks_;
}

void EventList::Add(const Row& row, std::int64_t ms, std::int64_t utcMs, const GpsFix* fix) {
  if (!isNews_) return;
  if (row.table == "string" && ++texts_ > kMostTexts) {
    ++more_;
    return;
  }
  Push({ms, utcMs, row.table == "bookmark" ? bookmarks_ : 0, Clipped(row.source, kNameBytes),
        Clipped(row.text, kTextBytes), fix == nullptr ? std::nullopt : std::optional(*fix)});
}

void EventList::Say(std::int64_t ms, std::int64_t utcMs, std::string_view source, std::string_view text) {
  Push({ms, utcMs, 0, std::string(source), std::string(text), std::nullopt});
}

void EventList::Push(const Event& event) {
  if (events_.size() < kMost) {
    events_.push_back(event);
  } else {
    ++more_;
  }
}

void EventList::Write(JsonWriter& json) const {
  json.Array("events");
  for (const Event& event : events_) {
    json.Object().Number("t", event.ms);
    if (event.utcMs == kNoUtc) {
      json.Null("utcMs");
    } else {
      json.Number("utcMs", event.utcMs);
    }
    json.Text("source", event.source);
    json.Text("text", event.text);
    if (event.bookmark > 0) json.Number("number", event.bookmark);
    if (event.fix) {
      json.Object("place").Number("lat", event.fix->latitudeE4min);
      json.Number("lon", event.fix->longitudeE4min);
      json.Decimal("kmh", static_cast<double>(event.fix->speedDeciKmh) / 10);
      json.EndObject();
    }
    json.EndObject();
  }
  json.EndArray();
  json.Number("moreEvents", more_);
}

}  // namespace reader
