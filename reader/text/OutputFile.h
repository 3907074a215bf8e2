#pragma once

#include <memory>
#include <string>

#include "Messages.h"
#include "Output.h"

namespace reader {

// The output of a command: a file, or standard output for "-" and for an empty name. A file is written under
// a temporary name and renamed by Finish, so a failure leaves the old file unchanged. A device or a pipe is
// written directly.
class OutputFile {
 public:
  ~OutputFile();
  OutputFile() = default;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  // Reports a problem and returns false if the file cannot be written, or is a database or a WAL.
  bool Open(const std::string& name, Messages& messages);
  // Whether the output is not standard output.
  bool IsNamed() const { return fd_ >= 0; }
  Output& Out() { return *out_; }
  // Reports a problem and returns false if anything could not be written.
  bool Finish();

 private:
  bool OpenBeside();
  bool Fail(int error);

  std::string name_;
  std::string place_;   // path of the file, links resolved
  std::string beside_;  // temporary path; empty: written directly
  Messages* messages_ = nullptr;
  int fd_ = -1;
  std::unique_ptr<Output> out_;
};

}  // namespace reader
