#pragma once

#include <string>

#include "seal/Types.h"
#include "support/TempDir.h"

// A key file for the recorder of a test, and the verdicts on what it recorded.
class Sealed {
 public:
  Sealed();

  std::string KeyFile() const { return dir_.Path("seal.key"); }
  const seal::PublicKey& Root() const { return root_; }

  // The verdicts "altered" on the recordings of a directory, one a line.
  std::string Altered(const std::string& directory) const { return Verdicts(directory, true); }
  // The same of all verdicts that are worse than "proven, except for the end".
  std::string Unproven(const std::string& directory) const { return Verdicts(directory, false); }

 private:
  std::string Verdicts(const std::string& directory, bool alteredOnly) const;

  TempDir dir_;
  seal::PublicKey root_{};
};
