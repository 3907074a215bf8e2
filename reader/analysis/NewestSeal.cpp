#include "NewestSeal.h"

#include "Recording.h"
#include "Schema.h"
#include "SealRow.h"

namespace reader {

std::optional<seal::Place> NewestSeal(const std::vector<std::string>& files, Messages& messages) {
  for (auto path = files.rbegin(); path != files.rend(); ++path) {
    Recording file;
    std::string why;
    if (!file.Open(*path, why)) {
      messages.Problem(*path + ": " + why);
      continue;
    }
    Statement row;
    seal::Seal seal;
    if (Ok(row.Prepare(file.Sql().Handle(), store::kReadLastSeal)) && row.Step() == store::SqliteCode::kRow &&
        store::TakeSeal(row, seal))
      return seal.place;
  }
  return std::nullopt;
}

}  // namespace reader
