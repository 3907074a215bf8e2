#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Progress.h"
#include "RecordReader.h"

// One run of the process: its files, in their order.
struct Run {
  int number = 0;  // from 1
  std::vector<std::string> files;
  bool beginIsMissing = false;  // the first file follows another one
  bool live = false;            // its last file is being written
  std::int64_t records = 0;     // about how many
  std::int64_t lastSeq = 0;     // of the last one
};

// The files that the paths name: a directory stands for every recording in it ("<name>.NNNNNN.db").
// A path that leads nowhere is complained about.
std::vector<std::string> FindFiles(const std::vector<std::string>& paths, Messages& messages);

// Joins files to runs. What cannot be opened is complained about and belongs to none; so are files of
// another schema, and what they miss.
std::vector<Run> FindRuns(const std::vector<std::string>& files, Messages& messages);

// The records of several runs, one after the other.
class RunReader {
 public:
  RunReader(std::vector<Run> runs, const Selection* selection, bool text, Messages& messages);

  bool Next(Row& row);
  void Pause();  // as RecordReader
  // The file that the row read last is from.
  const std::string& File() const { return runs_[run_].files[file_ - 1]; }
  // Shows how far it is; `beside` as Progress.
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
