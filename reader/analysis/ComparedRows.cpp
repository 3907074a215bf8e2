#include "ComparedRows.h"

#include "Encode.h"

namespace reader {
namespace {

constexpr std::int64_t kNoTick = 0xFFFFFFFF;

// 0 and the highest tick count as missing. Live streams have a tick of the recorder.
bool IsTicked(const Row& row) {
  return row.hasSenderTick && row.senderTick != 0 && row.senderTick != kNoTick && row.table != "live_stream";
}

void AppendValues(const Row& row, std::string& out) {
  out = EventName(row.event);
  for (const Field& field : row.fields) {
    out.append(" ").append(field.name).append(" ");
    if (field.isText) {
      AppendJson(field.text, out);
    } else {
      AppendNumber(field.number, out);
    }
  }
}

}  // namespace

bool ComparedRows::IsCompared(const Row& row) const {
  if (row.event == EventKind::kRestated || row.table == "full_state") return false;
  if (row.table == "clock" && !scope_.clock) return false;
  return scope_.ignored == nullptr || !scope_.ignored->Selects(row.table, row.source);
}

bool ComparedRows::Next(ComparedRow& compared) {
  for (Row row; reader_.Next(row);) {
    if (!IsCompared(row)) continue;
    compared.rank = ++rank_;
    compared.table = row.table;
    compared.source = row.source;
    compared.seq = row.seq;
    compared.event = row.event;
    compared.tick = row.tick;
    compared.ticked = IsTicked(row);
    if (compared.ticked) lastSenderTick_ = static_cast<std::uint32_t>(row.senderTick);
    compared.senderTick = lastSenderTick_;
    compared.utcMs = row.utcMs;
    AppendValues(row, compared.values);
    return true;
  }
  return false;
}

}  // namespace reader
