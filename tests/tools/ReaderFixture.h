#pragma once

#include <fcntl.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "store/StoreFixture.h"
#include "support/Child.h"

// What a run of the reader gave.
struct Ran {
  int status = -1;
  std::string out;
  std::string said;  // on standard error
};

// In a child: a program, writing into two files.
inline int ExecInto(const std::vector<std::string>& arguments, const std::string& out,
                    const std::string& said) {
  std::vector<char*> argv;
  argv.reserve(arguments.size() + 1);
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  constexpr int kNew = O_WRONLY | O_CREAT | O_TRUNC;
  if (dup2(open("/dev/null", O_RDONLY), STDIN_FILENO) >= 0 &&
      dup2(open(out.c_str(), kNew, 0600), STDOUT_FILENO) >= 0 &&
      dup2(open(said.c_str(), kNew, 0600), STDERR_FILENO) >= 0) {
    (void)execvp(argv[0], argv.data());
  }
  return 127;
}

// Runs a program to its end.
inline Ran RunProgram(const std::vector<std::string>& arguments) {
  const TempDir directory;
  Ran ran;
  ran.status =
      Child([&] { return ExecInto(arguments, directory.Path("out"), directory.Path("said")); }).Wait();
  ran.out = directory.Read("out");
  ran.said = directory.Read("said");
  return ran;
}

inline Ran Metadata(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), METADATA_PROGRAM);
  return RunProgram(arguments);
}

inline bool IsInstalled(const std::string& program) {
  return RunProgram({"sh", "-c", "command -v " + program}).status == 0;
}

// A store, and the reader on what it writes.
class ReaderTest : public StoreTest {
 protected:
  // The records of a short drive, two seconds long, that begins 100 ms after the run.
  void Drive() {
    After(100);
    Store().ReportStateData(e_Tag_RecordingStarted, true, clock_.tick);
    Brakes(true);
    Store().ReportSpeed(1, 50, true, clock_.tick - 20, e_Tag_None);
    Store().ReportCameraState(e_CameraPort{2}, e_CameraState{1}, false, 0xFFFFFFFF);
    Store().ReportStringData(e_Tag_Filler, "a \"quoted\", cut\nline \xC3\xA9\x1B[2J");
    After(1000);
    Store().ReportBookmark(clock_.tick - 300);
    Temperature(-40);
    Brakes(false);
    After(1000);
    Store().ReportStateData(e_Tag_RecordingStopped, true, clock_.tick);
    Store().ReportBookmark(clock_.tick);
  }

  Ran Dump(std::vector<std::string> options, int file = 1) const {
    options.insert(options.begin(), {"dump", File(file)});
    return Metadata(options);
  }
};
