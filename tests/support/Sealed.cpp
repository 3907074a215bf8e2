#include "support/Sealed.h"

#include <cstdlib>

#include "SealCheck.h"
#include "seal/KeyFile.h"
#include "seal/KeyPlace.h"
#include "seal/KeyTree.h"

using seal::Verdict;

Sealed::Sealed() {
  seal::Seed seed;
  seed.fill(7);
  const seal::KeyTree tree(seed);
  seal::KeyFile file;
  if (file.Create(KeyFile(), seal::Hardware(), tree) != seal::KeyFile::Outcome::kOk) std::abort();
  root_ = tree.Root();
}

std::string Sealed::Verdicts(const std::string& directory, bool alteredOnly) const {
  std::vector<std::string> paths;
  for (const auto& entry : std::filesystem::directory_iterator(directory))
    if (entry.path().extension() == ".db") paths.push_back(entry.path());
  std::string text;
  for (const reader::SealFinding& finding : reader::SealCheck({root_}).Verify(paths)) {
    const bool isProven =
        finding.empty || finding.verdict == Verdict::kProven || finding.verdict == Verdict::kTail;
    if (alteredOnly ? finding.verdict == Verdict::kAltered : !isProven)
      text += finding.path + ": seal " + std::to_string(finding.number) + ", verdict " +
              std::to_string(static_cast<int>(finding.verdict)) + ": " + finding.why + "\n";
  }
  return text;
}
