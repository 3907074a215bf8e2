#pragma once

#include <memory>
#include <string>
#include <vector>

#include "FileClock.h"
#include "Messages.h"
#include "Row.h"
#include "Selection.h"

namespace reader {

class Recording;
class TableCursor;

// The records of one file in their order, merged from its tables. Memory does not depend on their
// number.
class RecordReader {
 public:
  struct Wanted {
    const Selection* selection = nullptr;  // null: everything; else must outlive the reader
    bool text = false;                     // Row::text
    std::int64_t afterSeq = -1;            // only later ones
  };

  // `copy`: the file where it is open already as a private copy, or null.
  RecordReader(std::string path, Wanted wanted, Messages& messages,
               std::shared_ptr<Recording> copy = nullptr);

  ~RecordReader();
  RecordReader(const RecordReader&) = delete;
  RecordReader& operator=(const RecordReader&) = delete;

  // False, after a complaint, when the file cannot be opened.
  bool Open();
  // False at the end. Damage is complained about and skipped.
  bool Next(Row& row);
  // Lets go of a live file, whose writer would otherwise be held up while this program waits; the next
  // row takes it up again. The row read last is no longer valid.
  void Pause();

 private:
  static constexpr std::int64_t kMaxGuess = std::int64_t{1} << 40;

  bool Begin();
  bool Resume();
  // Whether the cursor stands on a record, behind damage where there is any.
  bool Stands(TableCursor& cursor, int rc);
  void SiftDown(std::size_t at);

  std::string path_;
  Wanted wanted_;
  Messages& messages_;
  std::shared_ptr<Recording> recording_;
  FileClock clock_;
  std::vector<std::unique_ptr<TableCursor>> cursors_;
  std::vector<TableCursor*> heap_;  // the one with the lowest sequence number first
  bool advanceFirst_ = false;
  bool paused_ = false;
  std::int64_t lastSeq_ = -1;    // of the row read last
  std::int64_t highestSeq_ = 0;  // of the file; looked for when there is damage
};

}  // namespace reader
