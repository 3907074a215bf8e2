#pragma once

#include <string>
#include <vector>

// In a child: becomes a program that writes into two files, which may be one, and reads `in` (-1: nothing).
int ExecInto(const std::vector<std::string>& arguments, const std::string& out, const std::string& said,
             int in = -1);

// What a run of a program gave.
struct Ran {
  int status = -1;
  std::string out;
  std::string said;  // on standard error
};

// Runs a program to its end.
Ran RunProgram(const std::vector<std::string>& arguments);

bool IsInstalled(const std::string& program);
