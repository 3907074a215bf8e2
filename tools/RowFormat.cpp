#include "RowFormat.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <utility>

#include "Utc.h"

namespace {

class TextFormat : public RowFormat {
 public:
  bool WantsText() const override { return true; }

  void Append(const Row& row, std::string& out) override {
    constexpr std::size_t kSourceWidth = 16;
    utc_.Append(row.utcMs, out);
    out += "  ";
    out += row.source;
    out.append(row.source.size() < kSourceWidth ? kSourceWidth - row.source.size() : 0, ' ');
    out += "  ";
    if (row.text.empty()) {
      for (const Field& field : row.fields) AppendField(field, out);
    } else {
      AppendPrintable(row.text, out);
    }
    if (row.event != EventKind::kEvent) out.append(" (").append(EventName(row.event)).append(")");
    out += '\n';
  }

 private:
  static void AppendField(const Field& field, std::string& out) {
    out.append(out.back() == ' ' ? "" : " ").append(field.name).append("=");
    if (field.isText) {
      AppendPrintable(field.text, out);
    } else {
      AppendNumber(field.number, out);
    }
  }
  UtcWriter utc_;
};

class JsonFormat : public RowFormat {
 public:
  void Append(const Row& row, std::string& out) override {
    out += "{\"run\":";
    AppendNumber(row.run, out);
    out += ",\"seq\":";
    AppendNumber(row.seq, out);
    out += ",\"utc\":";
    if (row.utcMs == kNoUtc) {
      out += "null";
    } else {
      out += '"';
      utc_.Append(row.utcMs, out);
      out += row.utcBySender ? R"(","utc_from":"sender")" : R"(","utc_from":"arrival")";
    }
    out += ",\"tick\":";
    AppendNumber(row.tick, out);
    if (row.hasSenderTick) {
      out += ",\"sender_tick\":";
      AppendNumber(row.senderTick, out);
    }
    out.append(R"(,"event":")").append(EventName(row.event)).append(R"(","table":)");
    AppendJson(row.table, out);
    out += ",\"source\":";
    AppendJson(row.source, out);
    for (const Field& field : row.fields) {
      out += ',';
      AppendJson(field.name, out);
      out += ':';
      if (field.isText) {
        AppendJson(field.text, out);
      } else {
        AppendNumber(field.number, out);
      }
    }
    out += "}\n";
  }

 private:
  UtcWriter utc_;
};

class CsvFormat : public RowFormat {
 public:
  explicit CsvFormat(const Selection* selection) {
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
    out.append(",").append(EventName(row.event)).append(",").append(row.table).append(",");
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

  // Where the fields of a table go.
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

  static void AppendValue(const Field& field, std::string& out) {
    if (field.isText) {
      AppendText(field.text, out);
    } else {
      AppendNumber(field.number, out);
    }
  }

  static void AppendText(std::string_view text, std::string& out) {
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) {
      out += text;
      return;
    }
    out += '"';
    for (const char c : text) out.append(c == '"' ? 2 : 1, c);
    out += '"';
  }

  std::vector<std::string> names_;
  std::map<std::string, Places, std::less<>> places_;
  UtcWriter utc_;
};

// The length of the UTF-8 character that the text begins with; 0 when it is none.
std::size_t CharacterBytes(std::string_view text) {
  const auto byte = [&text](std::size_t i) {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
  };
  const unsigned int first = byte(0);
  if (first < 0x80) return 1;
  const std::size_t bytes = first >= 0xF0 && first < 0xF5   ? 4
                            : first >= 0xE0 && first < 0xF0 ? 3
                            : first >= 0xC2 && first < 0xE0 ? 2
                                                            : 0;
  for (std::size_t i = 1; i < bytes; ++i) {
    if ((byte(i) & 0xC0U) != 0x80) return 0;
  }
  const bool tooLong = (first == 0xE0 && byte(1) < 0xA0) || (first == 0xF0 && byte(1) < 0x90);
  const bool noCharacter = (first == 0xED && byte(1) >= 0xA0) || (first == 0xF4 && byte(1) >= 0x90);
  return tooLong || noCharacter ? 0 : bytes;
}

}  // namespace

std::unique_ptr<RowFormat> MakeRowFormat(const std::string& name, const Selection* selection) {
  if (name == "csv") return std::make_unique<CsvFormat>(selection);
  if (name == "jsonl") return std::make_unique<JsonFormat>();
  return std::make_unique<TextFormat>();
}

const char* EventName(EventKind event) {
  switch (event) {
    case EventKind::kInitial:
      return "initial";
    case EventKind::kEvent:
      return "event";
    case EventKind::kRestated:
      return "restated";
  }
  return "unknown";
}

void AppendPrintable(std::string_view text, std::string& out) {
  for (const char c : text) out += static_cast<unsigned char>(c) < 0x20 || c == 0x7f ? '?' : c;
}

void AppendNumber(std::int64_t number, std::string& out) {
  char digits[24];
  const auto [end, error] = std::to_chars(digits, digits + sizeof digits, number);
  out.append(digits, static_cast<std::size_t>(end - digits));
}

void AppendDecimal(double number, int decimals, std::string& out) {
  char digits[400];
  const auto [end, error] =
      std::to_chars(digits, digits + sizeof digits, number, std::chars_format::fixed, decimals);
  out.append(digits, static_cast<std::size_t>(end - digits));
}

void AppendJson(std::string_view text, std::string& out) {
  constexpr const char* kHex = "0123456789abcdef";
  out += '"';
  while (!text.empty()) {
    const auto first = static_cast<unsigned char>(text[0]);
    const std::size_t bytes = CharacterBytes(text);
    if (bytes == 0) {
      out += "\xEF\xBF\xBD";
    } else if (first < 0x20 || first == 0x7F) {
      out.append("\\u00").append(1, kHex[first >> 4U]).append(1, kHex[first & 15U]);
    } else {
      if (first == '"' || first == '\\') out += '\\';
      out += text.substr(0, bytes);
    }
    text.remove_prefix(std::max<std::size_t>(bytes, 1));
  }
  out += '"';
}
