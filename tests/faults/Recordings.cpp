#include "Recordings.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <sstream>

#include "WatchedVfs.h"

Recordings::Recordings(const TempDir& dir, const std::string& exceptFor) {
  for (const auto& entry : std::filesystem::directory_iterator(dir.Path(""))) {
    const std::string path = entry.path().string();
    if (path.ends_with(".db") && entry.path().filename() != exceptFor)
      files_.push_back(std::make_unique<Connection>(path, kPlainVfs));
  }
}

std::string Recordings::Fault() {
  std::set<std::string> seqs;
  for (const auto& file : files_) {
    const std::string sound = file->Rows("PRAGMA integrity_check");
    if (sound != "ok\n") return "not sound: " + sound;
    std::istringstream rows(file->Rows("SELECT seq FROM record"));
    for (std::string seq; std::getline(rows, seq);) {
      if (!seqs.insert(seq).second) return "once more the record " + seq;
    }
  }
  return files_.empty() ? "no recordings" : std::string();
}

long Recordings::Holes() {
  long last = 0;
  for (const auto& file : files_)
    last = std::max(last, std::stol(file->Rows("SELECT last_seq FROM progress")));
  return last - Sum("SELECT count(*) FROM record") - Lost();
}

long Recordings::Missing(const std::vector<Report>& reports, const std::string& table) {
  const auto reported = std::count_if(reports.begin(), reports.end(),
                                      [&table](const Report& report) { return report.table == table; });
  return static_cast<long>(reported) - Sum("SELECT count(*) FROM " + table + " WHERE event=1");
}

long Recordings::Lost(const std::string& table) {
  return Sum("SELECT coalesce(sum(count),0) FROM loss WHERE lost_table='" + table + "'");
}

long Recordings::Sum(const std::string& sql) {
  long sum = 0;
  for (const auto& file : files_) sum += std::stol("0" + file->Rows(sql));
  return sum;
}
