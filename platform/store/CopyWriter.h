#pragma once

#include <functional>
#include <string>

#include "Database.h"
#include "Record.h"
#include "RunFiles.h"
#include "TickRange.h"

namespace store {

// Writes the records of a range of ticks into a file that is there and empty, as a recording of its
// own. Results are SQLite's codes.
class CopyWriter {
 public:
  // `pace` is called every few milliseconds.
  CopyWriter(const RunFiles& run, const TickRange& range, std::function<void()> pace);

  int Begin(const std::string& path);
  // What the copy says about itself: whose it is, the ticks that were asked for, what that was.
  int AddOrigin(const std::string& store, std::uint32_t firstAsked, std::uint32_t lastAsked);
  int CopyRun();
  int End();

 private:
  int CopyFrom(const RunFile& file, bool isFirst);
  int Attach(const RunFile& file);
  int CopyRecords(const RunFile& file);
  int RestateBegin();
  int RestateSources(TableId table);
  int RestateLater();

  // Runs a statement with the values as ?1 and ?2, as far as it has them.
  int Run(const std::string& sql, std::int64_t first = 0, std::int64_t second = 0);

  const RunFiles& run_;
  TickRange range_;
  std::size_t firstFile_ = 0;  // the one that tells the state at the range's begin
  std::size_t lastFile_ = 0;
  std::function<void()> pace_;
  Database database_;
};

}  // namespace store
