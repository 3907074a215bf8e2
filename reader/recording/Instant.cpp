#include "Instant.h"

#include <array>
#include <charconv>
#include <cmath>
#include <utility>

#include "Row.h"
#include "Utc.h"

namespace reader {
namespace {

struct NamedEvent {
  const char* name;
  const char* source;
  int active;
};
constexpr std::array<NamedEvent, 19> kEvents{{
    {"record-start", "recording", 1},
    {"record-stop", "recording", 0},
    {"bookmark", "bookmark", Instant::kAnyActive},
    {"crash", "crash", 1},
    {"crash-cleared", "crash", 0},
    {"covert-on", "covert", 1},
    {"covert-off", "covert", 0},
    {"lights-on", "lights", 1},
    {"lights-off", "lights", 0},
    {"siren-on", "siren", 1},
    {"siren-off", "siren", 0},
    {"brakes-on", "brakes", 1},
    {"brakes-off", "brakes", 0},
    {"aux-on", "aux", 1},
    {"aux-off", "aux", 0},
    {"door-open", "doorOpen", 1},
    {"door-closed", "doorOpen", 0},
    {"ignition-on", "ignition", 1},
    {"ignition-off", "ignition", 0},
}};

template <typename Number>
bool TakeNumber(std::string_view& text, Number& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc()) return false;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return true;
}

// Reads "+1.5m".
bool TakeDistance(std::string_view& text, std::int64_t& ms) {
  constexpr std::array<std::pair<std::string_view, double>, 4> kUnits{
      {{"ms", 1}, {"s", 1000}, {"m", 60'000}, {"h", 3'600'000}}};
  const double sign = text.starts_with('-') ? -1 : 1;
  text.remove_prefix(1);
  double number = 0;
  if (!TakeNumber(text, number) || !(number >= 0 && number <= 1e9)) return false;  // also rejects NaN
  for (const auto& [unit, factor] : kUnits) {
    if (text != unit) continue;
    ms = std::llround(sign * number * factor);
    text = {};
    return true;
  }
  return false;
}

// Takes the longest event name at the start of the text.
const NamedEvent* TakeEvent(std::string_view& text) {
  const NamedEvent* found = nullptr;
  for (const NamedEvent& row : kEvents) {
    const std::string_view name = row.name;
    if (text.starts_with(name) && (found == nullptr || name.size() > std::string_view(found->name).size()))
      found = &row;
  }
  if (found != nullptr) text.remove_prefix(std::string_view(found->name).size());
  return found;
}

bool ReadEvent(std::string_view text, Instant& instant) {
  const NamedEvent* event = TakeEvent(text);
  if (event == nullptr) return false;
  instant.kind = Instant::Kind::kEvent;
  instant.source = event->source;
  instant.active = event->active;
  if (text.starts_with(':')) {
    text.remove_prefix(1);
    if (!TakeNumber(text, instant.count) || instant.count < 1) return false;
  }
  if (text.starts_with('+') || text.starts_with('-')) return TakeDistance(text, instant.distanceMs);
  return text.empty();
}

bool ReadTick(std::string_view text, Instant& instant) {
  return TakeNumber(text, instant.value) && text.empty() && instant.value >= 0 &&
         instant.value <= kFarthestMs;
}

// A tick this large would mean 31 years since boot, so the number counts from 1970 (2001 or later).
constexpr std::int64_t kLeastEpochMs = 1'000'000'000'000;

}  // namespace

std::string EpochHint(const std::string& text, std::int64_t utcMs) {
  return "'" + text + "' is no tick of these recordings. If it counts from 1970, write " + UtcText(utcMs);
}

bool ReadInstant(const std::string& text, Instant& instant, std::string& error) {
  instant = {};
  instant.said = text;
  if (ReadTick(text, instant)) {
    if (instant.value < kLeastEpochMs) return true;
    error = EpochHint(text, instant.value);
    return false;
  }
  instant.kind = Instant::Kind::kUtc;
  if (ReadUtc(text, instant.value) || ReadEvent(text, instant)) return true;
  error = "'" + text + "' is no time: " + InstantHelp();
  return false;
}

std::vector<std::string> EventNames() {
  std::vector<std::string> names;
  names.reserve(std::size(kEvents));
  for (const NamedEvent& row : kEvents) names.emplace_back(row.name);
  return names;
}

std::string InstantHelp() {
  return "a tick, a time (2024-05-01T12:00:00Z, 2024-05-01T14:00+02:00) or an event (crash, bookmark:2-30s)";
}

std::string InstantFooter() {
  constexpr std::size_t kColumns = 100;
  std::string line = "Events:";
  std::string footer = "T is " + InstantHelp() + ".\n";
  for (const NamedEvent& row : kEvents) {
    const std::string word = " " + std::string(row.name) + (&row == &kEvents.back() ? "." : ",");
    if (line.size() + word.size() > kColumns) footer += std::exchange(line, " ") + "\n";
    line += word;
  }
  return footer + line + "\n";
}

}  // namespace reader
