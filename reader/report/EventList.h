#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "GpsFix.h"

namespace reader {

class JsonWriter;

// The list of events, limited to what people can read.
class EventList {
 public:
  // `bookmarks`: number of earlier bookmarks.
  explicit EventList(int bookmarks) : bookmarks_(bookmarks) {}

  // Call for every record of the run, in order.
  void Follow(const Row& row);
  // Call after Follow for a record to show. `utcMs` may be kNoUtc; `fix` is null if the position is unknown.
  void Add(const Row& row, std::int64_t ms, std::int64_t utcMs, const GpsFix* fix);
  void Say(std::int64_t ms, std::int64_t utcMs, std::string_view source, std::string_view text);

  int Bookmarks() const { return bookmarks_; }
  // Writes "events" and "moreEvents", the number of events left out. Each event has "t", "utcMs" (null if
  // unknown), "source" and "text"; a bookmark has "number"; with a known position, "place" has "lat", "lon"
  // and "kmh".
  void Write(JsonWriter& json) const;

 private:
  static constexpr std::size_t kMost = 4000;
  static constexpr int kMostTexts = 1000;  // of kMost: texts from other processes
  struct Event {
    std::int64_t ms;
    std::int64_t utcMs;
    int bookmark;  // 0: not a bookmark
    std::string source;
    std::string text;
    std::optional<GpsFix> fix;
  };

  void Push(const Event& event);

  std::vector<Event> events_;
  std::map<std::string, bool, std::less<>> active_;  // last state by signal
  int bookmarks_;
  bool isNews_ = false;  // the last followed record is an event
  int texts_ = 0;
  std::int64_t more_ = 0;
};

}  // namespace reader
