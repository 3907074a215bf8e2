#include "Recordings.h"

#include <algorithm>
#include <filesystem>
#include <sstream>

#include "WatchedVfs.h"

Recordings::Recordings(const TempDir& dir, const std::string& exceptFor) {
  for (const auto& entry : std::filesystem::directory_iterator(dir.Path(""))) {
    const std::string path = entry.path().string();
    if (path.ends_with(".db") && entry.path().filename() != exceptFor) Read(path);
  }
  if (files_ == 0) fault_ = "no recordings";
}

void Recordings::Read(const std::string& path) {
  ++files_;
  Connection file(path, kPlainVfs);
  if (const std::string sound = file.Rows("PRAGMA integrity_check"); sound != "ok\n")
    fault_ = "not sound: " + sound;
  const long last = std::strtol(file.Rows("SELECT last_seq FROM progress").c_str(), nullptr, 10);
  if (last == 0) fault_ = "only begun: " + path;
  last_ = std::max(last_, last);
  // Those that a usage has records in.
  for (const std::string table :
       {"clock", "temperature", "string", "bookmark", "state", "loss", "previous_run", "run_end"}) {
    std::istringstream counts(
        file.Rows("SELECT count(*)||' '||count(*) FILTER (WHERE event=1) FROM " + table));
    long all = 0;
    long reported = 0;
    counts >> all >> reported;
    records_ += all;
    recorded_[table] += reported;
  }
  std::istringstream losses(file.Rows("SELECT lost_table||' '||count FROM loss"));
  std::string table;
  for (long count = 0; losses >> table >> count; lostInAll_ += count) lost_[table] += count;
}
