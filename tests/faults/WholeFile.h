#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>

// A recording as it was in the end, to hold against it what a fault left of it.
class WholeFile {
 public:
  struct Found {
    std::string fault;      // empty: sound, and the beginning of this recording up to the end of a commit
    std::int64_t last = 0;  // sequence number of the last record; 0: there is none
  };

  // A commit ended with this record.
  void AddCommit(std::int64_t last) { commits_.insert(last); }
  void Read(const std::string& path);

  Found Compare(const std::string& path) const;
  std::int64_t Last() const { return seqEnds_.empty() ? 0 : seqEnds_.rbegin()->first; }

 private:
  std::string rows_;                             // one line a record
  std::map<std::int64_t, std::size_t> seqEnds_;  // where in these the line of a number ends
  std::set<std::int64_t> commits_{0};
};
