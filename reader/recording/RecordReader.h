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

// Reads the records of one file in order of their sequence numbers, merged from its tables. Memory use does
// not depend on the number of records.
class RecordReader {
 public:
  struct Wanted {
    const Selection* selection = nullptr;  // null selects everything; must outlive the reader
    bool text = false;                     // fill Row::text
    std::int64_t afterSeq = -1;            // only later records
  };

  // `copy`: the file's open private copy, or null.
  RecordReader(std::string path, Wanted wanted, Messages& messages,
               std::shared_ptr<Recording> copy = nullptr);

  ~RecordReader();
  RecordReader(const RecordReader&) = delete;
  RecordReader& operator=(const RecordReader&) = delete;

  // Reports a problem and returns false if the file cannot be opened.
  bool Open();
  // Returns false at the end. Reports and skips damage.
  bool Next(Row& row);
  // Closes a live file, so that this program can wait without holding up the writer. Next opens it again. The
  // last row becomes invalid.
  void Pause();

 private:
  static constexpr std::int64_t kMaxGuess = std::int64_t{1} << 40;

  bool Begin();
  bool Resume();
  // Moves the cursor to its first or its next record, past damage. False at the end of its table.
  bool Advance(TableCursor& cursor, bool begins);
  void SiftDown(std::size_t at);

  std::string path_;
  Wanted wanted_;
  Messages& messages_;
  std::shared_ptr<Recording> recording_;
  FileClock clock_;
  std::vector<std::unique_ptr<TableCursor>> cursors_;
  std::vector<TableCursor*> heap_;  // min-heap by sequence number
  bool advanceFirst_ = false;
  bool paused_ = false;
  std::int64_t lastSeq_ = -1;    // of the last row
  std::int64_t highestSeq_ = 0;  // of the file; read only after damage
};

}  // namespace reader
