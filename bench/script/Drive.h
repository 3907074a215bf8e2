#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Verbs.h"

namespace bench {

// A drive: a text file of timed commands. Each line has a time, in seconds since full run with up to three
// decimals, then the words of a command. Times must not go back. "#" at the begin of a word starts a comment;
// blank lines are ignored. "quit" must be the last line; without "quit" the drive runs until the bench is
// stopped.
//
// Lines with "before" in place of the time come first: they run before MetadataMgr starts.

struct DriveLine {
  std::chrono::milliseconds at;
  Command command;
  std::string text{};  // for people; only in a replay
};

struct Drive {
  std::string name;
  std::vector<Command> before;
  std::vector<DriveLine> lines;

  // A replay has these in place of lines.
  std::function<bool(DriveLine& line)> next{};        // gives the lines one by one; false at the end
  std::optional<std::uint32_t> beginTick{};           // the drive begins at this system tick, or later
  std::optional<std::chrono::milliseconds> length{};  // unknown, or of a drive that repeats
  bool endsInKill = false;                            // MetadataMgr is killed at the end

  bool IsReplay() const { return next != nullptr; }
};

// Reads the text of a drive. Returns its errors, each as "NAME:LINE: wrong word and reason".
std::vector<std::string> ParseDrive(const std::string& name, std::string_view text, Drive& drive);

// Reads a drive from a file. A file that cannot be read is an error too.
std::vector<std::string> ReadDrive(const std::string& path, Drive& drive);

// Reads the built-in drive, about 20 seconds.
std::vector<std::string> ReadDefaultDrive(Drive& drive);

}  // namespace bench
