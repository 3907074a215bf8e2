#pragma once

// Reads the options of the process. -s and -r set their mode and report it on standard output; -l sets
// `logLevel`. Prints the usage on standard error and returns false for -h and for unknown options: the
// process must exit.
bool ParseCommandLine(int argc, char** argv, unsigned int& logLevel);
