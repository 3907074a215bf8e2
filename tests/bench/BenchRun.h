#pragma once

#include <memory>
#include <string>
#include <vector>

#include "support/Child.h"
#include "support/Program.h"
#include "support/TempDir.h"

// Runs vehiclebench as a user does, in a directory of its own.
class BenchRun {
 public:
  // Uses the MetadataMgr of this build, or the stub with a behaviour. Arguments may name another program.
  BenchRun();
  explicit BenchRun(const std::string& stubBehaviour);

  // Uses another directory name, which may contain "/".
  void UseDirectory(const std::string& name) { out_ = name; }
  void Drive(const std::string& text) { drive_ = directory_.Write("test.drive", text); }
  // The built-in drive without its quit: a quit overtakes messages that are still under way.
  static std::string DriveWithoutItsEnd();

  void Start(const std::vector<std::string>& arguments = {});
  // Waits until the bench has printed the text.
  bool Said(const std::string& text) const;
  // Gives the bench a terminal of its own as standard input.
  void UseTerminal(int terminal) { terminal_ = terminal; }
  void Signal(int signal) const { child_->Signal(signal); }
  pid_t Id() const { return child_->Id(); }
  // Returns the exit status.
  int Finish();
  int Run(const std::vector<std::string>& arguments = {});
  // Plays a recording, or a directory with recordings, as fast as possible.
  void StartReplay(const std::string& recording, const std::vector<std::string>& arguments = {});
  int Replay(const std::string& recording, const std::vector<std::string>& arguments = {});

  std::string Output() const { return directory_.Read("output"); }
  std::string Log(const std::string& process) const {
    return directory_.Read(out_ + "/log/" + process + ".log");
  }
  std::string Path(const std::string& name) const { return directory_.Path(out_ + "/" + name); }
  // The first recording of MetadataMgr.
  std::string Recording() const { return Path("mnt/metadata/metadata.000001.db"); }

  // Sends a command from another terminal. Returns the exit status.
  int Send(const std::vector<std::string>& words) const;
  std::string SendOutput() const { return directory_.Read("send"); }

 private:
  void StartCommand(std::vector<std::string> all, const std::vector<std::string>& arguments);

  TempDir directory_;
  std::string out_ = "out";
  std::string drive_;
  std::vector<std::string> program_;
  std::string behaviour_;
  int terminal_ = -1;
  std::unique_ptr<Child> child_;
};

// Runs vehiclebench until it ends.
Ran RunVehicleBench(std::vector<std::string> arguments);

// Counts how often the text contains the part.
std::size_t Count(const std::string& text, const std::string& part);
