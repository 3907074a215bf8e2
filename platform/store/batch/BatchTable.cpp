#include "BatchTable.h"

#include <new>
#include <string_view>

#include "Tables.h"

namespace store {

// A statement's position in the rows.
class BatchCursor : public sqlite3_vtab_cursor {
 public:
  explicit BatchCursor(const BatchTable& table) : sqlite3_vtab_cursor{}, table_(table) {}

  void MoveTo(std::size_t row);
  void Begin() { MoveTo(table_.begin_); }
  void Next() { MoveTo(row_ + 1); }
  bool AtEnd() const { return row_ == table_.end_; }
  std::int64_t Row() const { return record_.header.seq; }
  void Tell(sqlite3_context* result, std::size_t column) const;

 private:
  void TellCell(sqlite3_context* result, std::size_t column) const;

  const BatchTable& table_;
  std::size_t row_ = 0;
  RecordView record_{};
  std::array<const unsigned char*, std::tuple_size_v<decltype(Table::columns)>> cells_{};
};

void BatchCursor::MoveTo(std::size_t row) {
  row_ = row;
  if (AtEnd()) return;
  std::size_t offset = table_.offsets_[row_];
  (void)table_.batch_->Next(offset, record_);
  const unsigned char* cell = record_.cells;
  std::size_t index = 0;
  for (const Column& column : kTables[record_.header.table].columns) {
    if (column.name == nullptr) return;
    cells_[index++] = cell;
    if (column.type == ColumnType::kText) {
      (void)TakeText(cell);
    } else {
      (void)TakeInteger(cell);
    }
  }
}

void BatchCursor::Tell(sqlite3_context* result, std::size_t column) const {
  const RecordHeader& header = record_.header;
  switch (column) {
    case 0:
      return sqlite3_result_int64(result, header.seq);
    case 1:
      return sqlite3_result_int64(result, header.tick);
    case 2:
      if (header.senderTick != kNoSenderTick) sqlite3_result_int64(result, header.senderTick);
      return;  // else it stays NULL
    case 3:
      return sqlite3_result_int64(result, static_cast<std::int64_t>(header.event));
    default:
      TellCell(result, column - 4);
  }
}

void BatchCursor::TellCell(sqlite3_context* result, std::size_t column) const {
  const unsigned char* cell = cells_[column];
  if (kTables[record_.header.table].columns[column].type == ColumnType::kText) {
    const std::string_view text = TakeText(cell);
    sqlite3_result_text(result, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
  } else {
    sqlite3_result_int64(result, TakeInteger(cell));
  }
}

namespace {

struct Module : sqlite3_vtab {
  const BatchTable* table = nullptr;
};

BatchCursor& Of(sqlite3_vtab_cursor* cursor) {
  return *static_cast<BatchCursor*>(cursor);
}

int Connect(sqlite3* database, void* table, int /*argc*/, const char* const* /*argv*/, sqlite3_vtab** made,
            char** /*error*/) {
  const int rc = sqlite3_declare_vtab(database,
                                      "CREATE TABLE batch(seq, tick, sender_tick, event, c0, c1, c2, c3, c4, "
                                      "c5, c6, c7, c8, c9, c10, c11, c12, c13)");
  if (rc != SQLITE_OK) return rc;
  auto* module = new (std::nothrow) Module();
  if (module == nullptr) return SQLITE_NOMEM;
  module->table = static_cast<const BatchTable*>(table);
  *made = module;
  return SQLITE_OK;
}

int Disconnect(sqlite3_vtab* module) {
  delete static_cast<Module*>(module);
  return SQLITE_OK;
}

int Open(sqlite3_vtab* module, sqlite3_vtab_cursor** made) {
  *made = new (std::nothrow) BatchCursor(*static_cast<Module*>(module)->table);
  return *made == nullptr ? SQLITE_NOMEM : SQLITE_OK;
}

int Close(sqlite3_vtab_cursor* cursor) {
  delete &Of(cursor);
  return SQLITE_OK;
}

sqlite3_module MakeModule() {
  sqlite3_module module{};  // without xCreate: eponymous, in no schema
  module.xConnect = Connect;
  module.xDisconnect = Disconnect;
  module.xBestIndex = [](sqlite3_vtab*, sqlite3_index_info*) { return SQLITE_OK; };
  module.xOpen = Open;
  module.xClose = Close;
  module.xFilter = [](sqlite3_vtab_cursor* cursor, int, const char*, int, sqlite3_value**) {
    Of(cursor).Begin();
    return SQLITE_OK;
  };
  module.xNext = [](sqlite3_vtab_cursor* cursor) {
    Of(cursor).Next();
    return SQLITE_OK;
  };
  module.xEof = [](sqlite3_vtab_cursor* cursor) { return Of(cursor).AtEnd() ? 1 : 0; };
  module.xColumn = [](sqlite3_vtab_cursor* cursor, sqlite3_context* result, int column) {
    Of(cursor).Tell(result, static_cast<std::size_t>(column));
    return SQLITE_OK;
  };
  module.xRowid = [](sqlite3_vtab_cursor* cursor, sqlite3_int64* row) {
    *row = Of(cursor).Row();
    return SQLITE_OK;
  };
  return module;
}

}  // namespace

SqliteCode BatchTable::Register(sqlite3* database) {
  static const sqlite3_module module = MakeModule();
  return SqliteCode{sqlite3_create_module(database, "batch", &module, this)};
}

RecordHeader BatchTable::Take(const Batch& batch, std::size_t maxBytes) {
  batch_ = &batch;
  std::array<std::size_t, kTableCount> counts{};
  RecordView record;
  std::size_t taken = 0;
  for (std::size_t next = 0; next < maxBytes && batch.Next(next, record); ++taken) {
    ++counts[record.header.table];
  }
  offsets_.resize(taken);
  std::size_t end = 0;
  for (std::size_t table = 0; table < kTableCount; ++table) {
    ends_[table] = end;  // advances with each record below
    end += counts[table];
  }
  std::size_t next = 0;
  for (std::size_t i = 0; i < taken; ++i) {
    const std::size_t offset = next;
    (void)batch.Next(next, record);
    offsets_[ends_[record.header.table]++] = offset;
  }
  return record.header;
}

bool BatchTable::Select(TableId table) {
  begin_ = table == 0 ? 0 : ends_[table - 1U];
  end_ = ends_[table];
  return begin_ != end_;
}

}  // namespace store
