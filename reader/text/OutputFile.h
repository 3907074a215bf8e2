#pragma once

#include <memory>
#include <string>

#include "Messages.h"
#include "Output.h"

namespace reader {

// Where a command writes what it makes: a file, or standard output for "-" and for no name. A file is
// written beside its place and renamed in Finish, so whatever fails leaves the old one as it was. A
// device or a pipe is written directly.
class OutputFile {
 public:
  ~OutputFile();
  OutputFile() = default;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  // False, after a problem was said, when it cannot be written, or is a recording or its WAL.
  bool Open(const std::string& name, Messages& messages);
  // Whether it is a file.
  bool IsNamed() const { return fd_ >= 0; }
  Output& Out() { return *out_; }
  // False, after a problem was said, when not all of it was written.
  bool Finish();

 private:
  bool OpenBeside();
  bool Fail(int error);

  std::string name_;
  std::string place_;   // of the file, links followed
  std::string beside_;  // empty: it is written directly
  Messages* messages_ = nullptr;
  int fd_ = -1;
  std::unique_ptr<Output> out_;
};

}  // namespace reader
