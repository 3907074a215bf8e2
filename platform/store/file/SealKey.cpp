#include "SealKey.h"

#include "log/LogLine.h"
#include "seal/KeyPlace.h"

namespace store {
namespace {

constexpr LogSource log{"DataStore"};

}  // namespace

void UseSealKey(seal::Sealer& sealer, const std::string& given) {
  using Outcome = seal::KeyFile::Outcome;
  const std::string path = given.empty() ? seal::KeyFilePath() : given;
  const Outcome outcome = sealer.UseKey(path, seal::Hardware());
  if (outcome == Outcome::kOk) return;
  log(outcome == Outcome::kMissing ? kLogUnusual : kLogError, "Recordings are sealed without the key ", path,
      ": ", seal::TextOf(outcome));
}

}  // namespace store
