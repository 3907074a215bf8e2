#pragma once

#include <map>
#include <string>
#include <vector>

#include "support/Child.h"
#include "support/TempDir.h"

using Arguments = std::vector<std::string>;
using Environment = std::map<std::string, std::string>;

// MetadataMgr as a process of its own, where the target is another machine under its emulator. It runs in
// `directory`; what it writes goes to two files there. Ended by force, if need be, by the destructor.
class Program {
 public:
  // `out`: its standard output, where that is not to be a file.
  Program(const TempDir& directory, const Arguments& arguments, const Environment& environment, int out = -1);

  pid_t Id() const { return id_; }
  void Signal(int signal) const { child_.Signal(signal); }

  // Waits until it is the program, no longer a copy of this one.
  void AwaitExec() const;
  // Waits for the end: the exit status, or 128 plus the number of the signal.
  int End() { return child_.Wait(); }
  bool Ended() const { return child_.Ended(); }

  std::string Out() const { return directory_.Read(name_ + ".out"); }
  std::string Err() const { return directory_.Read(name_ + ".err"); }

 private:
  const TempDir& directory_;
  const std::string name_;  // of the files, without ".out" and ".err"
  Child child_;
  const pid_t id_;
};
