#include "SealKey.h"

#include "log/LogLine.h"
#include "seal/KeyPlace.h"

namespace store {
namespace {

constexpr LogSource log{"DataStore"};

}  // namespace

void UseSealKey(seal::Sealer& sealer, const std::string& given) {
  const std::string path = given.empty() ? seal::KeyFilePath() : given;
  const seal::KeyFile::Outcome outcome = sealer.UseKey(path, seal::Hardware());
  const bool isFault = outcome != seal::KeyFile::Outcome::kOk && outcome != seal::KeyFile::Outcome::kMissing;
  if (isFault) log(kLogError, "Recordings are sealed without the key ", path, ": ", seal::TextOf(outcome));
}

}  // namespace store
