#include "RowText.h"

#include "Encode.h"

namespace reader {
namespace {

// Measured columns of numbered sources: the format's text has the number without label and unit.
bool IsMeasured(const store::Column& column) {
  return column.chart != store::Chart::kNone && *column.unit != '\0';
}

int MeasuredColumns(const store::Table* table) {
  if (table == nullptr || !table->HasNumberedSources()) return 0;
  int count = 0;
  for (const store::Column& column : table->columns)
    count += column.name != nullptr && IsMeasured(column) ? 1 : 0;
  return count;
}

}  // namespace

void AppendRowText(const Row& row, std::string& out) {
  const int count = MeasuredColumns(row.known);
  if (count == 0 || row.fields.size() < row.known->ColumnCount()) {
    AppendPrintable(row.text, out);
    return;
  }
  const char* unit = "";
  const char* separator = "";
  for (std::size_t i = 0; i < row.known->ColumnCount(); ++i) {
    const store::Column& column = row.known->columns[i];
    if (!IsMeasured(column)) continue;
    out += separator;
    if (count > 1 && column.line != nullptr) out.append(column.line).append(" ");
    AppendNumber(row.Number(column.name), out);
    unit = column.unit;
    separator = ", ";
  }
  out.append(" ").append(unit);
  if (const std::int64_t direction = row.Number("direction"); direction != 0)
    out.append(", direction ").append(std::to_string(direction));
}

}  // namespace reader
