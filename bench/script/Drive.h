#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

#include "Verbs.h"

namespace bench {

// A drive: a text file of timed commands. On each line stands the time in seconds since the system
// came to full run, with up to three decimals, then the words of a command. Times never go back.
// "#" at the beginning of a word begins a comment; blank lines are ignored. No line follows "quit"; a drive
// without "quit" goes on until it is ended from outside.
//
// Lines with "before" in place of the time come first: they are done before MetadataMgr starts.

struct DriveLine {
  std::chrono::milliseconds at;
  Command command;
};

struct Drive {
  std::string name;
  std::vector<Command> before;
  std::vector<DriveLine> lines;
};

// Reads the text of a drive. Returns its errors, each as "NAME:LINE: the wrong word and why".
std::vector<std::string> ParseDrive(const std::string& name, std::string_view text, Drive& drive);

// Reads a file. A file that cannot be read is an error too.
std::vector<std::string> ReadDrive(const std::string& path, Drive& drive);

// The drive that comes with the bench, about 20 seconds.
std::vector<std::string> ReadDefaultDrive(Drive& drive);

}  // namespace bench
