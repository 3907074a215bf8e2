#include "SealKey.h"

#include "StoreLog.h"
#include "seal/KeyPlace.h"

namespace store {
void UseSealKey(seal::Sealer& sealer, const std::string& given) {
  const std::string path = given.empty() ? seal::KeyFilePath() : given;
  const seal::KeyFile::Outcome outcome = sealer.UseKey(path, seal::Hardware());
  const bool isFault = outcome != seal::KeyFile::Outcome::kOk && outcome != seal::KeyFile::Outcome::kMissing;
  if (isFault)
    kStoreLog(kLogError, "Recordings are sealed without the key ", path, ": ", seal::TextOf(outcome));
}

}  // namespace store
