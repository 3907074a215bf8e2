#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string_view>
#include <vector>

#include "Publications.h"
#include "Row.h"
#include "Words.h"
#include "items/Enumerations.h"
#include "items/MicStatusResponse.h"

namespace bench {

using reader::Row;

// Turns the rows of a recording, in order, into the items and messages that make the same rows again.
class ItemsOfRows {
 public:
  ItemsOfRows();

  // Takes a row into the values of its source. Returns the source if the row completes an event, else null.
  const Source* Take(const Row& row);

  // The verb "payload" with the last event of a source. Its tick is moved; 0 and 4294967295 stay.
  Words Event(const Source& source, std::uint32_t shiftMs);
  // The same for each item that MetadataMgr asks for at its start, with the values that were taken.
  std::vector<Words> FirstValues(std::uint32_t shiftMs);
  // Whether a video recording is running.
  bool Recording() const { return recording_; }

  // The sender tick of a row; that of its arrival if the sender gave none.
  static std::uint32_t TickOf(const Row& row);
  static std::uint32_t Moved(std::uint32_t tick, std::uint32_t shiftMs);

 private:
  using Make = const Source* (ItemsOfRows::*)(const Row&);
  struct Table;
  static const Table kTables[];
  struct Value {
    const Publication* publication = nullptr;
    std::unique_ptr<Item> item;
    std::uint32_t tick = 0;
    bool taken = false;
  };

  template <typename T>
  T& At(const Source* source) {
    return static_cast<T&>(*values_.at(source).item);
  }
  const Source* State(const Row& row);
  const Source* GpsState(const Row& row);
  const Source* Gps(const Row& row);
  const Source* RadarState(const Row& row);
  const Source* Radar(const Row& row);
  const Source* Speed(const Row& row);
  const Source* MicPresent(const Row& row);
  const Source* MicActive(const Row& row);
  const Source* Temperature(const Row& row);
  const Source* Camera(const Row& row);
  const Source* VideoStream(const Row& row);
  const Source* Quality(const Row& row);
  const Source* LiveStream(const Row& row);
  const Source* Vehicle(const Row& row);
  const Source* SystemInfo(const Row& row);
  const Source* Department(const Row& row);
  const Source* Officer(const Row& row);
  const Source* RecordingSettings(const Row& row);

  std::map<const Source*, Value> values_;
  std::map<std::int64_t, MicStatusResponse::Entry> mics_;  // last values
  bool recording_ = false;
};

}  // namespace bench
