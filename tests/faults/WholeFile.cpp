#include "WholeFile.h"

#include <cstdlib>

#include "WatchedVfs.h"
#include "store/StoreFixture.h"

namespace {

constexpr const char* kRows = "SELECT seq, tick, sender_tick, event, source, text FROM record ORDER BY seq";

}  // namespace

void WholeFile::Read(const std::string& path) {
  rows_ = Connection(path, kPlainVfs).Rows(kRows);
  std::int64_t before = 0;
  for (std::size_t start = 0; start < rows_.size();) {
    const std::int64_t seq = std::strtoll(rows_.c_str() + start, nullptr, 10);
    if (before != 0) {
      EXPECT_EQ(seq, before + 1) << "a hole in " << path;
    }
    before = seq;
    start = seqEnds_[seq] = rows_.find('\n', start) + 1;
  }
  EXPECT_FALSE(seqEnds_.empty()) << path;
}

WholeFile::Found WholeFile::Compare(const std::string& path) const {
  Found found;
  Connection file(path, kPlainVfs);
  const std::string sound = file.Rows("PRAGMA integrity_check");
  if (sound != "ok\n") return {"not sound: " + sound, 0};
  if (file.Rows("SELECT count(*) FROM sqlite_schema") == "0\n") return found;  // had not come to be yet
  const std::string last = file.Rows("SELECT last_seq FROM progress");
  found.last = std::strtoll(last.c_str(), nullptr, 10);
  if (last != std::to_string(found.last) + "\n") return {"without progress: " + last, 0};
  if (!commits_.contains(found.last)) return {"ends within a commit, at " + last, found.last};
  const auto end = seqEnds_.find(found.last);
  const std::size_t size = end == seqEnds_.end() ? 0 : end->second;
  if (file.Rows(kRows) != rows_.substr(0, size)) found.fault = "other records than were written";
  return found;
}
