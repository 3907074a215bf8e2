#include "AsMade.h"

#include "Schema.h"
#include "Tags.h"

namespace reader {
namespace {

constexpr const char* kSchema = "SELECT type, name, tbl_name, sql FROM main.sqlite_master ORDER BY rowid";
constexpr const char* kTagNames =
    "SELECT tag, name, active_text, inactive_text FROM main.tag_name ORDER BY tag";
constexpr const char* kProgress = "SELECT last_seq, last_tick FROM main.progress";

// Compares the rows of one query.
bool Same(Connection& one, Connection& other, const char* sql, int columns, std::string& first) {
  Statement a;
  Statement b;
  if (!Ok(a.Prepare(one.Handle(), sql)) || !Ok(b.Prepare(other.Handle(), sql))) return false;
  for (;;) {
    const SqliteCode stepA = a.Step();
    const SqliteCode stepB = b.Step();
    if (stepA == SqliteCode::kRow) first = a.Text(1);
    if (stepA != SqliteCode::kRow || stepB != stepA) return stepA == SqliteCode::kDone && stepB == stepA;
    for (int column = 0; column < columns; ++column) {
      if (a.Type(column) != b.Type(column) || a.Text(column) != b.Text(column)) return false;
    }
  }
}

}  // namespace

std::string DifferenceFromMade(Recording& file) {
  static Connection made;
  static const bool isMade =
      Ok(made.Open(":memory:", SQLITE_OPEN_READWRITE)) && Ok(made.Execute(store::CreateSchema()));
  if (!isMade) return "no memory to compare its schema";
  std::string at;
  if (!Same(file.Sql(), made, kSchema, 4, at)) return "its schema is not the store's, at " + at;
  if (!Same(file.Sql(), made, kTagNames, 4, at)) return "its names of tags are not the store's, at " + at;
  if (!Same(file.Sql(), made, kProgress, 2, at)) return "its table progress is not the store's";
  return {};
}

}  // namespace reader
