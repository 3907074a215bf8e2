#include "NewestSeal.h"

#include "Recording.h"
#include "Schema.h"
#include "SealRow.h"

namespace reader {

std::optional<seal::Place> NewestSeal(const std::vector<std::string>& files, Messages& messages) {
  for (std::size_t i = files.size(); i-- > 0;) {
    Recording file;
    std::string why;
    if (!file.Open(files[i], why)) {
      messages.Problem(files[i] + ": " + why);
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
