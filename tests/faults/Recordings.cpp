#include "Recordings.h"

#include <algorithm>
#include <filesystem>
#include <sstream>

#include "WatchedVfs.h"

namespace {

// Those that a usage has records in. Reading them costs half of what the views do.
std::string AllRecords() {
  std::string sql;
  for (const std::string table :
       {"clock", "temperature", "string", "bookmark", "state", "loss", "previous_run", "run_end"}) {
    sql.append(sql.empty() ? "" : " UNION ALL ").append("SELECT '").append(table);
    sql.append("'||' '||seq||' '||event FROM ").append(table);
  }
  return sql;
}

}  // namespace

Recordings::Recordings(const TempDir& dir, const std::string& exceptFor) {
  for (const auto& entry : std::filesystem::directory_iterator(dir.Path(""))) {
    const std::string path = entry.path().string();
    if (path.ends_with(".db") && entry.path().filename() != exceptFor) Read(path);
  }
  if (files_ == 0) fault_ = "no recordings";
}

void Recordings::Read(const std::string& path) {
  static const std::string kAllRecords = AllRecords();
  ++files_;
  Connection file(path, kPlainVfs);
  if (const std::string sound = file.Rows("PRAGMA integrity_check"); sound != "ok\n")
    fault_ = "not sound: " + sound;
  const long last = std::strtol(file.Rows("SELECT last_seq FROM progress").c_str(), nullptr, 10);
  if (last == 0) fault_ = "only begun: " + path;
  last_ = std::max(last_, last);
  std::string table;
  std::istringstream records(file.Rows(kAllRecords));
  for (long seq = 0, event = 0; records >> table >> seq >> event;) {
    if (!seqs_.insert(seq).second) fault_ = "once more the record " + std::to_string(seq);
    if (event == 1) ++recorded_[table];
  }
  std::istringstream losses(file.Rows("SELECT lost_table||' '||count FROM loss"));
  for (long count = 0; losses >> table >> count;) lost_[table] += count;
}

long Recordings::Lost() const {
  long sum = 0;
  for (const auto& [table, count] : lost_) sum += count;
  return sum;
}
