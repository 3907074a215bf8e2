#pragma once

#include <concepts>
#include <cstdint>
#include <span>
#include <string_view>
#include <type_traits>

#include "Tables.h"

namespace store {

// One column's value for the batch. Does not copy a text.
class Value {
 public:
  explicit Value(std::integral auto number) : number_(static_cast<std::int64_t>(number)) {}
  template <typename E>
  requires std::is_enum_v<E>
  explicit Value(E number) : number_(static_cast<std::int64_t>(number)) {}
  explicit Value(std::string_view text)
      : number_(static_cast<std::int64_t>(text.size())), text_(text.empty() ? "" : text.data()) {}

  std::int64_t Number() const { return number_; }
  std::string_view Text() const { return {text_, static_cast<std::size_t>(number_)}; }
  bool IsText() const { return text_ != nullptr; }

 private:
  std::int64_t number_ = 0;  // of a text: its length
  const char* text_ = nullptr;
};

// Whether a value of this type belongs into a column of that type.
template <typename T>
constexpr bool Fits(ColumnType type) {
  if (type == ColumnType::kText) return std::is_convertible_v<T, std::string_view>;
  return std::is_integral_v<T> || std::is_enum_v<T>;
}

// Whether these types match the table's columns, in order.
template <TableId kTable, typename... Values>
constexpr bool FitColumns() {
  if (sizeof...(Values) != kTables[kTable].ColumnCount()) return false;
  [[maybe_unused]] const Column* column = kTables[kTable].columns.data();
  return (Fits<Values>((column++)->type) && ...);
}

// The values of one record of a table. Compiles only if their number and types match the table's columns.
template <TableId kTable>
class Row {
 public:
  template <typename... Values>
  requires(FitColumns<kTable, Values...>()) explicit Row(const Values&... values)
      : values_{Value(values)...} {}

  std::span<const Value> Values() const { return values_; }

 private:
  std::array<Value, kTables[kTable].ColumnCount()> values_;
};

// A view of a row of any table; valid as long as the row.
class RowView {
 public:
  template <TableId kTable>
  RowView(const Row<kTable>& row)  // NOLINT(google-explicit-constructor): a row is passed as its view
      : table_(kTable), values_(row.Values()) {}

  TableId Table() const { return table_; }
  std::span<const Value> Values() const { return values_; }

 private:
  TableId table_;
  std::span<const Value> values_;
};

}  // namespace store
