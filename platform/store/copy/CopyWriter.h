#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include "Database.h"
#include "Record.h"
#include "RunFiles.h"
#include "TickRange.h"

namespace store {

// Writes the records of a range of ticks into an existing empty file, as a recording of its own. Returns
// SQLite's codes.
class CopyWriter {
 public:
  // `pace` is called every few milliseconds.
  CopyWriter(const RunFiles& run, const TickRange& range, std::function<void()> pace);

  // Writes through the caller's descriptor.
  SqliteCode Begin(int file);
  SqliteCode CopyRun();
  // Completes the copy. Its row of copy holds the store, the ticks asked for and the range they mean.
  SqliteCode End(const std::string& store, std::uint32_t firstAsked, std::uint32_t lastAsked);

 private:
  struct Pick {
    TableId table;
    std::int64_t seq;
  };
  using Picks = std::vector<Pick>;

  SqliteCode CopyFrom(const RunFile& file, bool isFirst);
  // Finds the sequence numbers of the file that span the range and the full state before it.
  SqliteCode FindStretch();
  SqliteCode IsComplete(std::int64_t mark, std::int64_t lastSeq, bool& complete);
  SqliteCode Attach(const RunFile& file);
  SqliteCode CopyRecords(const RunFile& file);
  SqliteCode AddOrigin(const std::string& store, std::uint32_t firstAsked, std::uint32_t lastAsked);
  SqliteCode LastSeq(std::int64_t& seq);

  // CopyRestated.cpp: restated records before and after the range, so that the copy stands alone.
  SqliteCode RestateBegin();
  SqliteCode RestateLater();
  SqliteCode PickSources(TableId table, Picks& picks);
  SqliteCode PickEach(TableId table, const std::string& select, std::int64_t tick, Picks& picks);
  SqliteCode LastSeqBefore(std::int64_t& seq);
  SqliteCode RestateAll(const Picks& picks, std::int64_t firstSeq, std::int64_t tick);

  // Runs a statement with these values. Ignores values without a parameter.
  SqliteCode Run(const std::string& sql, std::initializer_list<std::int64_t> values = {});

  const RunFiles& run_;
  TickRange range_;
  std::int64_t lowestSeq_ = 0;
  std::int64_t highestSeq_ = 0;
  std::size_t firstFile_ = 0;  // holds the state at the begin of the range
  std::size_t lastFile_ = 0;
  std::function<void()> pace_;
  Database database_;
};

}  // namespace store
