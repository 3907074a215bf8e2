#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace reader {

class JsonWriter;

// Which state something had over time, for a picture. Where the states change more often than a picture
// can show, a stretch of time tells how much of it was on.
class Lane {
 public:
  enum class Level : unsigned char { kOff, kPresent, kOn };

  // `text` tells the state. Times never go back; one that does counts as the time before it.
  void Set(std::int64_t ms, const std::string& text, Level level);
  // Forgets what was before, other than the state in force.
  void BeginAt(std::int64_t ms);
  // "states" ([text, level]), "t", "state" (which one from then on; -1: several in turn), "share" (percent
  // of the time up to the next that was on), how often it came on ("times") and for how long in all up to
  // `endMs` ("onMs").
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
