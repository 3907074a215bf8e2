#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Progress.h"
#include "RecordReader.h"
#include "Runs.h"

namespace reader {

// Reads the records of several runs, one run after the other.
class RunReader {
 public:
  RunReader(std::vector<Run> runs, const Selection* selection, bool text, Messages& messages);

  bool Next(Row& row);
  void Pause();  // as RecordReader::Pause
  // The file of the last row.
  const std::string& File() const { return runs_[run_].files[file_ - 1]; }
  // Shows progress; `beside` as in Progress.
  void ShowProgress(bool beside) { progress_.emplace(beside); }

 private:
  bool NextFile();

  std::vector<Run> runs_;
  const Selection* selection_;
  bool text_;
  Messages& messages_;
  std::size_t run_ = 0;
  std::size_t file_ = 0;
  std::unique_ptr<RecordReader> reader_;
  std::optional<Progress> progress_;
  std::int64_t done_ = 0;
  std::int64_t total_ = 0;
};

}  // namespace reader
