#include "TableCursor.h"

#include <algorithm>

namespace reader {
namespace {

constexpr int kHeaderColumns = 4;  // seq, tick, sender_tick, event

// A sound file has some dozens of sources.
constexpr std::size_t kMaxSources = 4096;

}  // namespace

TableCursor::TableCursor(sqlite3* database, const RecordTable& table, const Selection* selection,
                         bool withText)
    : database_(database), table_(table), selection_(selection), withText_(withText) {
  for (std::size_t i = 0; i < table.columns.size(); ++i) names_.push_back(FieldName(table, i));
  fields_.resize(names_.size());
  for (std::size_t i = 0; i < names_.size(); ++i) {
    fields_[i].name = names_[i];
    fields_[i].isText = table.columns[i].isText;
  }
}

SqliteCode TableCursor::Prepare() {
  if (rows_.IsPrepared()) return SqliteCode::kOk;
  std::string columns = "seq, tick, sender_tick, event";
  for (const RecordColumn& column : table_.columns) columns += ", " + Quoted(column.name);
  const std::string rest = " FROM main." + Quoted(table_.name) + " WHERE seq > ?1 ORDER BY seq";
  if (withText_ && table_.known != nullptr &&
      Ok(rows_.Prepare(database_, "SELECT " + columns + ", " + table_.known->text + rest))) {
    return SqliteCode::kOk;
  }
  withText_ = false;
  return rows_.Prepare(database_, "SELECT " + columns + rest);
}

SqliteCode TableCursor::Begin(std::int64_t afterSeq) {
  seq_ = std::max(seq_, afterSeq);
  if (const SqliteCode code = Prepare(); !Ok(code)) return code;
  rows_.Reset();
  rows_.Bind(1, afterSeq);
  return NextSelected(rows_.Step());
}

SqliteCode TableCursor::Next() {
  return NextSelected(rows_.Step());
}

SqliteCode TableCursor::NextSelected(SqliteCode code) {
  for (; code == SqliteCode::kRow; code = rows_.Step()) {
    const std::int64_t seq = rows_.Integer(0);
    if (seq <= seq_) return SqliteCode::kCorrupt;  // a damaged page: numbers must rise
    seq_ = seq;
    if (SourceHere().selected) return code;
    if (!table_.IsNumbered()) return SqliteCode::kDone;
  }
  return code;
}

SqliteCode TableCursor::SkipDamage(std::int64_t lastSeq) {
  const std::int64_t from = seq_;
  SqliteCode code = SqliteCode::kCorrupt;
  lastSeq = WithinCount(lastSeq);
  const auto isDamaged = [&code] { return code != SqliteCode::kRow && code != SqliteCode::kDone; };
  for (std::int64_t step = 1; isDamaged() && from <= lastSeq - step; step *= 2) {
    code = Begin(from + step);
  }
  return code;
}

const TableCursor::Source& TableCursor::SourceHere() {
  const std::int64_t number = table_.IsNumbered() ? rows_.Integer(kHeaderColumns) : 0;
  if (source_ != nullptr && number == sourceNumber_) return *source_;
  if (sources_.size() >= kMaxSources) sources_.clear();
  auto found = sources_.find(number);
  if (found == sources_.end()) {
    Source source{SourceName()};
    source.selected = selection_ == nullptr || selection_->Selects(table_.name, source.name);
    found = sources_.emplace(number, source).first;
  }
  sourceNumber_ = number;
  source_ = &found->second;
  return *source_;
}

std::string TableCursor::SourceName() const {
  if (table_.known == nullptr) return table_.name;
  return store::SourceOf(*table_.known, table_.IsNumbered() ? rows_.Integer(kHeaderColumns) : 0);
}

void TableCursor::Fill(Row& row) {
  row.seq = seq_;
  row.tick = WithinTime(rows_.Integer(1));
  row.hasSenderTick = !rows_.IsNull(2);
  row.senderTick = row.hasSenderTick ? rows_.Integer(2) : 0;
  row.event = static_cast<EventKind>(rows_.Integer(3));
  row.table = table_.name;
  row.known = table_.known;
  row.source = source_->name;
  int column = kHeaderColumns;
  for (Field& field : fields_) {
    if (field.isText) {
      field.text = rows_.Text(column);
    } else {
      field.number = rows_.Integer(column);
    }
    ++column;
  }
  row.text = withText_ ? rows_.Text(column) : std::string_view();
  row.fields = fields_;
}

}  // namespace reader
