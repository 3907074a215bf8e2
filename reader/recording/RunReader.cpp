#include "RunReader.h"

#include <utility>

namespace reader {

RunReader::RunReader(std::vector<Run> runs, const Selection* selection, bool text, Messages& messages)
    : runs_(std::move(runs)), selection_(selection), text_(text), messages_(messages) {
  for (const Run& run : runs_) total_ = WithinCount(total_ + run.records);
}

bool RunReader::NextFile() {
  reader_.reset();
  while (run_ < runs_.size() && file_ == runs_[run_].files.size()) {
    ++run_;
    file_ = 0;
  }
  if (run_ == runs_.size()) return false;
  const Run& run = runs_[run_];
  reader_ = std::make_unique<RecordReader>(run.files[file_], RecordReader::Wanted{selection_, text_, -1},
                                           messages_, run.copies[file_]);
  ++file_;
  if (!reader_->Open()) reader_.reset();
  return true;
}

bool RunReader::Next(Row& row) {
  for (;;) {
    if (reader_ != nullptr && reader_->Next(row)) {
      row.run = runs_[run_].number;
      if (progress_) progress_->Tell(++done_, total_);
      return true;
    }
    if (!NextFile()) return false;
  }
}

void RunReader::Pause() {
  if (reader_ != nullptr) reader_->Pause();
}

}  // namespace reader
