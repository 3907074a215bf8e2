#pragma once

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>

#include "Usage.h"
#include "WatchedVfs.h"
#include "support/TempDir.h"

// Compares all recordings of a directory with the reported records.
class Recordings {
 public:
  explicit Recordings(const TempDir& dir, const std::string& exceptFor = "") {
    for (const auto& entry : std::filesystem::directory_iterator(dir.Path(""))) {
      const std::string path = entry.path().string();
      if (path.ends_with(".db") && entry.path().filename() != exceptFor) Read(path);
    }
    EXPECT_GT(files_, 0U);
  }

  std::size_t Files() const { return files_; }

  // Record numbers that are neither recorded nor counted as lost; below 0: some are there twice.
  long Holes() const { return last_ - records_ - lostInAll_; }
  // Reported records of a table that are not recorded, and those counted as lost (restated records included).
  long Missing(const Usage& usage, const std::string& table) const {
    return usage.Reported(table) - Of(table, recorded_);
  }
  long Lost(const std::string& table) const { return Of(table, lost_); }
  long Lost() const { return lostInAll_; }

 private:
  void Read(const std::string& path) {
    ++files_;
    Connection file(path, kPlainVfs);
    EXPECT_EQ(file.Rows("PRAGMA integrity_check"), "ok\n");
    const long last = std::strtol(file.Rows("SELECT max(last_seq) FROM seal").c_str(), nullptr, 10);
    EXPECT_GT(last, 0) << "only begun: " << path;
    last_ = std::max(last_, last);
    // The tables that a Usage writes.
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

  std::size_t files_ = 0;
  long last_ = 0;
  long records_ = 0;
  Counts recorded_;  // without restated records
  Counts lost_;
  long lostInAll_ = 0;
};
