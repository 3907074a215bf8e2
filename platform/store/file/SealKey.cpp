#include "SealKey.h"

#include "StoreLog.h"
#include "seal/KeyPlace.h"

namespace store {

void UseSealKey(seal::Sealer& sealer, const std::string& given) {
  using Outcome = seal::KeyFile::Outcome;
  const std::string path = given.empty() ? seal::KeyFilePath() : given;
  const Outcome outcome = sealer.UseKey(path, seal::Hardware());
  if (outcome == Outcome::kOk) return;
  // A missing file is the rule until somebody makes a key.
  kStoreLog(outcome == Outcome::kMissing ? kLogInfo : kLogError, "Recordings are sealed without the key ",
            path, ": ", seal::TextOf(outcome));
}

}  // namespace store
