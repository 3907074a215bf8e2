#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace reader {

class JsonWriter;

// The states of one source over time, for a picture. Where states change faster than a picture can show, an
// interval stores its share of "on" time.
class Lane {
 public:
  enum class Level : unsigned char { kOff, kPresent, kOn };

  // `text` names the state. A time before the previous one is replaced by the previous one.
  void Set(std::int64_t ms, const std::string& text, Level level);
  // Drops everything before `ms` except the current state.
  void BeginAt(std::int64_t ms);
  // Writes "states" ([text, level]), "t", "state" (index of the state from that time; -1: several), "share"
  // (percent of "on" until the next time), "times" (how often it went on) and "onMs" (total "on" time until
  // `endMs`).
  void Write(std::int64_t endMs, JsonWriter& json) const;

 private:
  static constexpr std::size_t kMost = 2400;
  static constexpr std::size_t kMostStates = 200;
  static constexpr int kSeveral = -1;
  struct State {
    std::string text;
    Level level;
  };
  struct Piece {
    std::int64_t ms;
    int state;
    std::int64_t onMs;
  };

  int Number(const std::string& text, Level level);
  void Coarsen();
  int Share(std::size_t piece, std::int64_t endMs) const;

  std::vector<State> states_;
  std::vector<Piece> pieces_;
  std::int64_t widthMs_ = 1;
  std::int64_t times_ = 0;
  std::int64_t onMs_ = 0;
  std::int64_t lastMs_ = 0;
  bool on_ = false;
};

}  // namespace reader
