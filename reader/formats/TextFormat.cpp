#include "TextFormat.h"

#include "Encode.h"
#include "RowText.h"
#include "Utc.h"

namespace reader {
namespace {

class TextFormat : public RowFormat {
 public:
  bool WantsText() const override { return true; }

  void Append(const Row& row, std::string& out) override {
    constexpr std::size_t kSourceWidth = 16;
    utc_.Append(row.utcMs, out);
    out += "  ";
    AppendPrintable(row.source, out);
    out.append(row.source.size() < kSourceWidth ? kSourceWidth - row.source.size() : 0, ' ');
    out += "  ";
    if (row.text.empty()) {
      for (const Field& field : row.fields) AppendField(field, out);
    } else {
      AppendRowText(row, out);
    }
    if (row.event != EventKind::kEvent) out.append(" (").append(EventName(row.event)).append(")");
    out += '\n';
  }

 private:
  static void AppendField(const Field& field, std::string& out) {
    out.append(out.back() == ' ' ? "" : " ").append(Printable(field.name)).append("=");
    if (field.isText) {
      AppendPrintable(field.text, out);
    } else {
      AppendNumber(field.number, out);
    }
  }
  UtcWriter utc_;
};

}  // namespace

std::unique_ptr<RowFormat> MakeTextFormat() {
  return std::make_unique<TextFormat>();
}

}  // namespace reader
