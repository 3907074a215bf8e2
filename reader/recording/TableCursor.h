#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "Catalogue.h"
#include "Row.h"
#include "Selection.h"
#include "Sqlite.h"

namespace reader {

// Reads the records of one table in order of their sequence numbers.
class TableCursor {
 public:
  // `database`, `table` and `selection` must outlive the cursor. A null selection selects everything.
  TableCursor(sqlite3* database, const RecordTable& table, const Selection* selection, bool withText);

  // Moves to the first selected record after `afterSeq`. Returns kRow, kDone or an error.
  SqliteCode Begin(std::int64_t afterSeq);
  SqliteCode Next();
  // After an error: continues after the unreadable part, up to `lastSeq`. Returns as Begin does.
  SqliteCode SkipDamage(std::int64_t lastSeq);

  const RecordTable& Table() const { return table_; }
  std::int64_t Seq() const { return seq_; }  // of the current or last record
  // Fills all but run and UTC.
  void Fill(Row& row);

 private:
  struct Source {
    std::string name;
    bool selected = true;
  };

  SqliteCode Prepare();
  SqliteCode NextSelected(SqliteCode code);
  const Source& SourceHere();
  std::string SourceName() const;

  sqlite3* database_;
  const RecordTable& table_;
  const Selection* selection_;
  bool withText_;
  Statement rows_;
  std::int64_t seq_ = -1;
  std::vector<std::string> names_;
  std::vector<Field> fields_;
  std::unordered_map<std::int64_t, Source> sources_;
  std::int64_t sourceNumber_ = 0;  // number of source_
  const Source* source_ = nullptr;
};

}  // namespace reader
