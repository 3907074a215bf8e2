#include "SealTable.h"

#include "Schema.h"
#include "SealRow.h"
#include "Tables.h"

namespace store {
namespace {

void AddRow(const RecordView& record, seal::CommitHash& hash) {
  const RecordHeader& header = record.header;
  const Table& table = kTables[header.table];
  const std::size_t columns = table.ColumnCount();
  hash.BeginRow(table.name, 4 + columns);
  hash.Add(header.seq);
  hash.Add(header.tick);
  if (header.senderTick != kNoSenderTick) {
    hash.Add(header.senderTick);
  } else {
    hash.AddNull();
  }
  hash.Add(static_cast<std::int64_t>(header.event));
  const unsigned char* cell = record.cells;
  for (std::size_t i = 0; i < columns; ++i) {
    if (table.columns[i].type == ColumnType::kText) {
      hash.Add(TakeText(cell));
    } else {
      hash.Add(TakeInteger(cell));
    }
  }
}

}  // namespace

const seal::Seal& SealRows(const Batch& batch, const RecordHeader& last, seal::Sealer& sealer) {
  sealer.Begin(batch.First().seq, last.seq, last.tick);
  RecordView record;
  for (std::size_t next = 0; batch.Next(next, record) && record.header.seq <= last.seq;)
    AddRow(record, sealer.Rows());
  return sealer.End();
}

SqliteCode SealTable::Prepare(sqlite3* database) {
  const SqliteCode code = insert_.Prepare(database, kInsertSeal);
  return Ok(code) ? readLast_.Prepare(database, kReadLastSeal) : code;
}

SqliteCode SealTable::Insert(const seal::Seal& seal) {
  int column = 0;
  for (const std::int64_t field : {seal.place.number, seal.firstSeq, seal.lastSeq, seal.lastTick, seal.epoch})
    insert_.Bind(++column, field);
  insert_.Bind(++column, std::span<const unsigned char>(seal.place.hash));
  if (seal.isSigned) {
    insert_.Bind(++column, std::span<const unsigned char>(seal.signature));
  } else {
    insert_.BindNull(++column);
  }
  if (seal.note.empty()) {
    insert_.BindNull(++column);
  } else {
    insert_.Bind(++column, std::span<const unsigned char>(seal.note));
  }
  return insert_.Run();
}

SqliteCode SealTable::ReadLast(seal::Place& place, std::int64_t& lastSeq) {
  place = {};
  lastSeq = 0;
  SqliteCode code = readLast_.Step();
  if (code == SqliteCode::kRow) {
    seal::Seal last;
    code = TakeSeal(readLast_, last) ? SqliteCode::kDone : SqliteCode::kCorrupt;
    place = last.place;
    lastSeq = last.lastSeq;
  }
  readLast_.Reset();
  return code == SqliteCode::kDone ? SqliteCode::kOk : code;
}

SqliteCode ReadLastSeal(Database& database, std::optional<seal::Found>& seal) {
  Statement row;
  seal::Found found;
  seal::Seal first;
  seal::NoteItems items;
  SqliteCode code = row.Prepare(database.Handle(), kReadLastSeal);
  if (Ok(code)) code = row.Step();
  bool sound = code == SqliteCode::kRow && TakeSeal(row, found.last);
  if (sound) {
    code = row.Prepare(database.Handle(), kReadSeals);
    if (Ok(code)) code = row.Step();
    sound = code == SqliteCode::kRow && TakeSeal(row, first) && seal::ReadNote(first.note, items);
  }
  if (code != SqliteCode::kRow && code != SqliteCode::kDone) return code;
  if (sound && items.hasFile) {
    found.root = items.file.root;
    seal = found;
  }
  return SqliteCode::kOk;
}

}  // namespace store
