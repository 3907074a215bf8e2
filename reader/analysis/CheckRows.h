#pragma once

#include <string>

#include "CheckFile.h"
#include "Row.h"
#include "Runs.h"

namespace reader {

// Checks the records of one run: each missing record has a recorded loss, ticks do not go back, and values
// are valid. Take expects the records in order.
class CheckRows {
 public:
  CheckRows(const FileEnds& ends, Findings& findings) : ends_(ends), findings_(findings) {}

  void Take(const Row& row, const std::string& file);
  // Call after the last record.
  void End();

 private:
  void Add(const Row& row, const char* kind, const std::string& text);
  void CheckLedger(const Row& row);
  void CheckOrder(const Row& row);
  void CheckValues(const Row& row);
  void CheckPreviousRun(const Row& row);

  const FileEnds& ends_;
  Findings& findings_;
  std::string file_;
  std::string tableBefore_;
  std::int64_t seqBefore_ = 0;
  std::int64_t tickBefore_ = 0;
  bool ended_ = false;
  bool isCopy_ = false;  // copy of part of a run: records before and after it are missing
  std::int64_t missing_ = 0;
  std::int64_t lost_ = 0;
  std::string firstMissing_;
  std::string fileOfMissing_;
};

}  // namespace reader
