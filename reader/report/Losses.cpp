#include "Losses.h"

#include "Clipped.h"
#include "JsonWriter.h"

namespace reader {

void Losses::Add(const Row& row, std::int64_t ms) {
  constexpr std::size_t kNameBytes = 40;
  if (row.table == "loss") {
    const std::int64_t lost = row.Number("count");
    lost_ += static_cast<double>(lost);
    if (losses_.size() < kMost)
      losses_.emplace_back(
          Clipped(row.Text("lost_table"), kNameBytes),
          Stretch{lost, clock_.Ms(row.Number("from_tick")), clock_.Ms(row.Number("to_tick"))});
  }
  const std::int64_t count = row.seq - lastSeq_ - 1;
  if (all_ && any_ && count > 0) {
    missing_ += static_cast<double>(count);
    if (holes_.size() < kMost) holes_.push_back({count, lastMs_, ms});
  }
  any_ = true;
  lastSeq_ = row.seq;
  lastMs_ = ms;
}

void Losses::WriteStretch(const Stretch& stretch, JsonWriter& json) {
  json.Number(nullptr, stretch.count);
  json.Number(nullptr, stretch.fromMs);
  json.Number(nullptr, stretch.toMs);
}

void Losses::Write(JsonWriter& json) const {
  json.Decimal("lost", lost_);
  json.Decimal("missing", missing_);
  json.Array("losses");
  for (const auto& [table, stretch] : losses_) {
    json.Array().Text(nullptr, table);
    WriteStretch(stretch, json);
    json.EndArray();
  }
  json.EndArray();
  json.Array("holes");
  for (const Stretch& hole : holes_) {
    json.Array();
    WriteStretch(hole, json);
    json.EndArray();
  }
  json.EndArray();
}

}  // namespace reader
