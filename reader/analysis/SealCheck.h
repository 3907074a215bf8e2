#pragma once

#include <map>
#include <string>
#include <vector>

#include "Progress.h"
#include "seal/Chain.h"

namespace reader {

class Recording;
class SealedRows;

// What the seals of one recording say.
struct SealFinding {
  std::string path;
  seal::Verdict verdict = seal::Verdict::kCannotTell;
  bool empty = false;  // without records: the verdict means nothing
  std::string why;     // reason of a verdict that is not good
  // The first commit that is wrong; number 0: none.
  std::int64_t number = 0;
  std::int64_t firstSeq = 0;
  std::int64_t lastSeq = 0;
  seal::PublicKey root{};     // the recorder; zeros: unknown
  std::int64_t provenTo = 0;  // last record under a signature of a trusted key
  std::int64_t tail = 0;      // commits after the last signature
  std::int64_t records = 0;
  std::int64_t firstSeal = 0;  // 0: none
  seal::Place lastSeal;
};

// A seal that somebody noted elsewhere.
struct NotedSeal {
  std::int64_t number = 0;
  std::string fingerprint;
  bool found = false;
};

// Verifies recordings, files of one recorder oldest first. All files may be hostile.
class SealCheck {
 public:
  explicit SealCheck(std::vector<seal::PublicKey> trusted) : trusted_(std::move(trusted)), progress_(true) {}

  // A trusted recorder's seal with this number must be the noted one; see `found` afterwards. Without trusted
  // keys that of any recorder. Must outlive this object.
  void Expect(NotedSeal& noted) { noted_ = &noted; }

  // The verdict of each path, in the order in which they were verified.
  std::vector<SealFinding> Verify(const std::vector<std::string>& paths);

 private:
  // A recording whose first seal is known.
  struct Known {
    SealFinding finding;
    std::string chain;  // files with the same text belong to one chain
    std::int64_t records = 0;
  };

  Known LookAt(const std::string& path);
  void Follow(const Known& known, std::vector<SealFinding>& findings);
  std::string TakeRows(const seal::Seal& seal, SealedRows& rows, seal::Chain& chain, SealFinding& finding);
  void FollowSeals(Recording& file, seal::Chain& chain, SealFinding& finding);
  bool IsAsNoted(const seal::Place& place, const seal::PublicKey& root);
  bool IsTrusted(const seal::PublicKey& root) const;

  std::vector<seal::PublicKey> trusted_;
  NotedSeal* noted_ = nullptr;
  Progress progress_;
  std::int64_t done_ = 0;
  std::int64_t total_ = 0;
  struct Chained {
    seal::Chain chain;
    std::size_t before;  // finding of the file before
  };
  std::map<std::string, Chained> chains_;
};

}  // namespace reader
