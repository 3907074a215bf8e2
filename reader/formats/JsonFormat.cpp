#include "JsonFormat.h"

#include "Encode.h"
#include "Utc.h"

namespace reader {
namespace {

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

}  // namespace

std::unique_ptr<RowFormat> MakeJsonFormat() {
  return std::make_unique<JsonFormat>();
}

}  // namespace reader
