#include "Lane.h"

#include <algorithm>

#include "JsonWriter.h"

namespace reader {

void Lane::Set(std::int64_t ms, const std::string& text, Level level) {
  const bool on = level == Level::kOn;
  if (!pieces_.empty()) ms = std::max(ms, lastMs_);
  if (on_) {
    pieces_.back().onMs += ms - lastMs_;
    onMs_ += ms - lastMs_;
  }
  if (on && !on_) ++times_;
  on_ = on;
  lastMs_ = ms;
  const int state = Number(text, level);
  if (!pieces_.empty() && pieces_.back().state == state) return;
  pieces_.push_back({ms, state, 0});
  while (pieces_.size() > kMost) Coarsen();
}

void Lane::BeginAt(std::int64_t ms) {
  if (pieces_.empty()) return;
  pieces_ = {{ms, pieces_.back().state, 0}};
  times_ = on_ ? 1 : 0;
  onMs_ = 0;
  lastMs_ = ms;
}

int Lane::Number(const std::string& text, Level level) {
  const auto find = [&](const std::string& wanted) {
    const auto found = std::find_if(states_.begin(), states_.end(), [&](const State& state) {
      return state.text == wanted && state.level == level;
    });
    return static_cast<int>(found - states_.begin());
  };
  const auto count = static_cast<int>(states_.size());
  int state = find(text);
  if (state < count) return state;
  const std::string shown = states_.size() < kMostStates ? text : "another state";
  state = find(shown);
  if (state == count) states_.push_back({shown, level});
  return state;
}

// In each interval of widthMs_, keeps the last piece and merges the others into one.
void Lane::Coarsen() {
  widthMs_ *= 2;
  std::vector<Piece> kept;
  for (std::size_t i = 0; i < pieces_.size();) {
    std::size_t end = i + 1;
    while (end < pieces_.size() && pieces_[end].ms / widthMs_ == pieces_[i].ms / widthMs_) ++end;
    if (end - i > 1) {
      Piece before = pieces_[i];
      if (end - i > 2) before.state = kSeveral;
      for (std::size_t j = i + 1; j + 1 < end; ++j) before.onMs += pieces_[j].onMs;
      kept.push_back(before);
    }
    kept.push_back(pieces_[end - 1]);
    i = end;
  }
  pieces_ = std::move(kept);
}

int Lane::Share(std::size_t piece, std::int64_t endMs) const {
  const bool isLast = piece + 1 == pieces_.size();
  const std::int64_t ms = (isLast ? std::max(endMs, lastMs_) : pieces_[piece + 1].ms) - pieces_[piece].ms;
  const std::int64_t onMs = pieces_[piece].onMs + (isLast && on_ ? std::max(endMs, lastMs_) - lastMs_ : 0);
  if (ms > 0) return static_cast<int>((100 * onMs + ms / 2) / ms);
  return pieces_[piece].state >= 0 &&
                 states_[static_cast<std::size_t>(pieces_[piece].state)].level == Level::kOn
             ? 100
             : 0;
}

void Lane::Write(std::int64_t endMs, JsonWriter& json) const {
  json.Array("states");
  for (const State& state : states_) {
    json.Array().Text(nullptr, state.text);
    json.Number(nullptr, static_cast<int>(state.level));
    json.EndArray();
  }
  json.EndArray();
  json.Array("t");
  for (const Piece& piece : pieces_) json.Number(nullptr, piece.ms);
  json.EndArray();
  json.Array("state");
  for (const Piece& piece : pieces_) json.Number(nullptr, piece.state);
  json.EndArray();
  json.Array("share");
  for (std::size_t i = 0; i < pieces_.size(); ++i) json.Number(nullptr, Share(i, endMs));
  json.EndArray();
  json.Number("times", times_);
  json.Number("onMs", onMs_ + (on_ ? std::max<std::int64_t>(endMs - lastMs_, 0) : 0));
}

}  // namespace reader
