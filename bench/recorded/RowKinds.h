#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "Publications.h"
#include "Row.h"
#include "items/MicStatusResponse.h"

namespace bench {

using reader::Row;

// What the rows of a recording have told so far, for commands of a drive.
struct LineValues {
  // An item has one row per part. At the last part, returns the commands of the changed parts, at least one.
  std::string PartOf(const char* verb, std::int64_t part, const std::string& value, bool last);

  std::map<std::string, std::string> parts;  // last values, by verb and part
  std::string changed;                       // commands of the parts that changed
  std::string radar;                        // speeds of the last radar row; the next speed row completes them
  std::map<std::int64_t, bool> micPresent;  // last values
  std::string cameras;                      // states of the first cameras, one row each at the start
};

// The same for items and messages.
struct ItemValues {
  struct Value {
    const Publication* publication = nullptr;
    std::unique_ptr<Item> item;
    std::uint32_t tick = 0;
    bool taken = false;
  };

  template <typename T>
  T& At(const Source* source) {
    return static_cast<T&>(*sources.at(source).item);
  }

  std::map<const Source*, Value> sources;
  std::map<std::int64_t, MicStatusResponse::Entry> mics;  // last values
  bool recording = false;
};

// What the bench makes of the rows of one table.
struct RowKind {
  std::string_view table;
  // The command of a row, as "crash on", or several with "\n" between them. Empty when the row has no
  // command, or a later row completes it.
  std::string (*line)(LineValues& values, const Row& row);
  // Takes a row into the value of its source. Returns the source if the row completes an event, else null.
  const Source* (*item)(ItemValues& values, const Row& row);
};

std::span<const RowKind> StateRows();
std::span<const RowKind> ReadingRows();
std::span<const RowKind> VideoRows();
std::span<const RowKind> ConfigurationRows();

// Null for a table that no server causes.
const RowKind* FindRowKind(std::string_view table);

// The sender tick of a row; that of its arrival if the sender gave none.
std::uint32_t TickOf(const Row& row);

}  // namespace bench
