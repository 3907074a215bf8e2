#include "CsvFormat.h"

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

#include "Catalogue.h"
#include "Encode.h"
#include "Utc.h"

namespace reader {
namespace {

class CsvFormat : public RowFormat {
 public:
  CsvFormat(const Selection* selection, bool forSpreadsheets) : forSpreadsheets_(forSpreadsheets) {
    for (const RecordTable& table : CurrentCatalogue().tables) {
      if (selection != nullptr && !selection->MaySelect(table.name)) continue;
      for (std::size_t i = 0; i < table.columns.size(); ++i) {
        const std::string name = FieldName(table, i);
        if (std::find(names_.begin(), names_.end(), name) == names_.end()) names_.push_back(name);
      }
    }
  }

  void Begin(std::string& out) override {
    out += "run,seq,utc,utc_from,tick,sender_tick,event,table,source";
    for (const std::string& name : names_) out.append(",").append(name);
    out += '\n';
  }

  void Append(const Row& row, std::string& out) override {
    AppendNumber(row.run, out);
    out += ',';
    AppendNumber(row.seq, out);
    out += ',';
    if (row.utcMs != kNoUtc) utc_.Append(row.utcMs, out);
    out += row.utcMs == kNoUtc ? ",," : row.utcBySender ? ",sender," : ",arrival,";
    AppendNumber(row.tick, out);
    out += ',';
    if (row.hasSenderTick) AppendNumber(row.senderTick, out);
    out.append(",").append(EventName(row.event)).append(",");
    AppendText(row.table, out);
    out += ',';
    AppendText(row.source, out);
    std::size_t at = 0;
    for (const auto& [column, field] : PlacesOf(row)) {
      out.append(column + 1 - at, ',');
      at = column + 1;
      AppendValue(row.fields[field], out);
    }
    out.append(names_.size() - at, ',');
    out += '\n';
  }

 private:
  using Places = std::vector<std::pair<std::size_t, std::size_t>>;  // column, field

  // The CSV column of each field of the row's table.
  const Places& PlacesOf(const Row& row) {
    const auto known = places_.find(row.table);
    if (known != places_.end()) return known->second;
    Places places;
    for (std::size_t i = 0; i < row.fields.size(); ++i) {
      const auto column = std::find(names_.begin(), names_.end(), row.fields[i].name);
      if (column != names_.end()) places.emplace_back(column - names_.begin(), i);
    }
    std::sort(places.begin(), places.end());
    return places_.emplace(row.table, places).first->second;
  }

  void AppendValue(const Field& field, std::string& out) const {
    if (field.isText) {
      AppendText(field.text, out);
    } else {
      AppendNumber(field.number, out);
    }
  }

  void AppendText(std::string_view text, std::string& out) const {
    const bool isFormula = forSpreadsheets_ && text.find_first_of("=+-@\t\r") == 0;
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) {
      out.append(isFormula ? "'" : "").append(text);
      return;
    }
    out.append(isFormula ? "\"'" : "\"");
    for (const char c : text) out.append(c == '"' ? 2 : 1, c);
    out += '"';
  }

  bool forSpreadsheets_;
  std::vector<std::string> names_;
  std::map<std::string, Places, std::less<>> places_;
  UtcWriter utc_;
};

}  // namespace

std::unique_ptr<RowFormat> MakeCsvFormat(const Selection* selection, bool forSpreadsheets) {
  return std::make_unique<CsvFormat>(selection, forSpreadsheets);
}

}  // namespace reader
