#pragma once

#include <map>
#include <string>
#include <vector>

#include "support/Child.h"
#include "support/TempDir.h"

using Arguments = std::vector<std::string>;
using Environment = std::map<std::string, std::string>;

// MetadataMgr in its own process, under the emulator when built for another machine. It runs in `directory`
// and writes its output to two files there. The destructor kills it when it still runs.
class Program {
 public:
  // `out`: a descriptor for standard output; -1: a file.
  Program(const TempDir& directory, const Arguments& arguments, const Environment& environment, int out = -1);

  pid_t Id() const { return id_; }
  void Signal(int signal) const { child_.Signal(signal); }

  // Waits until the child has executed the program.
  void AwaitExec() const;
  // Waits for the end. Returns the exit status, or 128 plus the number of the signal.
  int End() { return child_.Wait(); }
  bool Ended() const { return child_.Ended(); }

  std::string Out() const { return directory_.Read(name_ + ".out"); }
  std::string Err() const { return directory_.Read(name_ + ".err"); }

 private:
  const TempDir& directory_;
  const std::string name_;  // base name of the files ".out" and ".err"
  Child child_;
  const pid_t id_;
};
