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
  if (a.Prepare(one.Handle(), sql) != SQLITE_OK || b.Prepare(other.Handle(), sql) != SQLITE_OK) return false;
  for (;;) {
    const int stepA = a.Step();
    const int stepB = b.Step();
    if (stepA == SQLITE_ROW) first = a.Text(1);
    if (stepA != SQLITE_ROW || stepB != SQLITE_ROW) return stepA == SQLITE_DONE && stepB == SQLITE_DONE;
    for (int column = 0; column < columns; ++column) {
      if (a.Type(column) != b.Type(column) || a.Text(column) != b.Text(column)) return false;
    }
  }
}

}  // namespace

std::string DifferenceFromMade(Recording& file) {
  Connection made;
  if (made.Open(":memory:", SQLITE_OPEN_READWRITE) != SQLITE_OK ||
      made.Execute(store::CreateSchema()) != SQLITE_OK)
    return "no memory to compare its schema";
  std::string at;
  if (!Same(file.Sql(), made, kSchema, 4, at)) return "its schema is not the store's, at " + at;
  if (!Same(file.Sql(), made, kTagNames, 4, at)) return "its names of tags are not the store's, at " + at;
  if (!Same(file.Sql(), made, kProgress, 2, at)) return "its table progress is not the store's";
  return {};
}

}  // namespace reader
