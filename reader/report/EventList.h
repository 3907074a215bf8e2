#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "GpsFix.h"

namespace reader {

class JsonWriter;

// What happened at an instant and is to be told in words: as many as people read.
class EventList {
 public:
  // Bookmarks are numbered on behind so many.
  explicit EventList(int bookmarks) : bookmarks_(bookmarks) {}

  // Of every record of the run, in their order.
  void Follow(const Row& row);
  // After Follow, of one that is to be shown; `utcMs` may be kNoUtc, `fix` null where the place was not
  // known.
  void Add(const Row& row, std::int64_t ms, std::int64_t utcMs, const GpsFix* fix);
  void Say(std::int64_t ms, std::int64_t utcMs, std::string_view source, std::string_view text);

  int Bookmarks() const { return bookmarks_; }
  // "events", each with "t", "utcMs" (null: not known), "source", "text", for a bookmark its "number",
  // where it is known the "place" ("lat", "lon", "kmh"); how many more there were ("moreEvents").
  void Write(JsonWriter& json) const;

 private:
  static constexpr std::size_t kMost = 4000;
  static constexpr int kMostTexts = 1000;  // that others sent, of all
  struct Event {
    std::int64_t ms;
    std::int64_t utcMs;
    int bookmark;  // 0: is none
    std::string source;
    std::string text;
    std::optional<GpsFix> fix;
  };

  void Push(const Event& event);

  std::vector<Event> events_;
  std::map<std::string, bool, std::less<>> active_;  // signals that were reported
  int bookmarks_;
  bool isNews_ = false;  // the record followed last
  int texts_ = 0;
  std::int64_t more_ = 0;
};

}  // namespace reader
