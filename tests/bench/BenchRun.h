#pragma once

#include <memory>
#include <string>
#include <vector>

#include "support/Child.h"
#include "support/Program.h"
#include "support/TempDir.h"

// vehiclebench, run as people do, in a directory of a test's own.
class BenchRun {
 public:
  // The MetadataMgr that runs with it, unless arguments name one: that of this build, or the stub with a
  // behaviour.
  BenchRun();
  explicit BenchRun(const std::string& stubBehaviour);

  // A directory of another name, also one with others above it.
  void UseDirectory(const std::string& name) { out_ = name; }
  void Drive(const std::string& text) { drive_ = directory_.Write("test.drive", text); }
  // The built-in drive, up to its quit: an end overtakes what others still say.
  static std::string DriveWithoutItsEnd();

  void Start(const std::vector<std::string>& arguments = {});
  // True as soon as the bench has said that.
  bool Said(const std::string& text) const;
  void Signal(int signal) const { child_->Signal(signal); }
  pid_t Id() const { return child_->Id(); }
  // The exit status.
  int Finish();
  int Run(const std::vector<std::string>& arguments = {});

  std::string Output() const { return directory_.Read("output"); }
  std::string Log(const std::string& process) const {
    return directory_.Read(out_ + "/log/" + process + ".log");
  }
  std::string Path(const std::string& name) const { return directory_.Path(out_ + "/" + name); }
  // The first file of what MetadataMgr recorded.
  std::string Recording() const { return Path("mnt/metadata/metadata.000001.db"); }

  // From another terminal; the exit status.
  int Send(const std::vector<std::string>& words) const;
  std::string SendOutput() const { return directory_.Read("send"); }

 private:
  TempDir directory_;
  std::string out_ = "out";
  std::string drive_;
  std::vector<std::string> program_;
  std::string behaviour_;
  std::unique_ptr<Child> child_;
};

// Runs vehiclebench with these arguments to its end.
Ran RunVehicleBench(std::vector<std::string> arguments);

// How often a part is in a text.
std::size_t Count(const std::string& text, const std::string& part);
