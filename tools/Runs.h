#pragma once

#include <string>
#include <vector>

#include "RecordReader.h"

// One run of the process: its files, in their order.
struct Run {
  int number = 0;  // from 1
  std::vector<std::string> files;
  bool beginIsMissing = false;  // the first file follows another one
  bool live = false;            // its last file is being written
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

 private:
  bool NextFile();

  std::vector<Run> runs_;
  const Selection* selection_;
  bool text_;
  Messages& messages_;
  std::size_t run_ = 0;
  std::size_t file_ = 0;
  std::unique_ptr<RecordReader> reader_;
};
