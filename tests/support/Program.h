#pragma once

#include <string>
#include <vector>

// Runs in a child: becomes a program that writes into two files, possibly the same, and reads `in` (-1:
// nothing).
int ExecInto(const std::vector<std::string>& arguments, const std::string& out, const std::string& said,
             int in = -1);

// The result of a program.
struct Ran {
  int status = -1;
  std::string out;
  std::string said;  // standard error
};

// Runs a program until it ends.
Ran RunProgram(const std::vector<std::string>& arguments);

bool IsInstalled(const std::string& program);
