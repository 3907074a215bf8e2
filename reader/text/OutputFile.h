#pragma once

#include <memory>
#include <string>

#include "Messages.h"
#include "Output.h"

// Where a command writes what it makes: a file, or standard output for "-" and for no name.
class OutputFile {
 public:
  ~OutputFile();
  OutputFile() = default;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  // False, after a problem was said, when it cannot be written, or is a recording or its log.
  bool Open(const std::string& name, Messages& messages);
  // Whether it is a file.
  bool IsNamed() const { return fd_ >= 0; }
  Output& Out() { return *out_; }
  // False, after a problem was said, when not all of it was written.
  bool Finish();

 private:
  std::string name_;
  Messages* messages_ = nullptr;
  int fd_ = -1;
  std::unique_ptr<Output> out_;
};
