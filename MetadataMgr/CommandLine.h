#pragma once

// Reads the options of the process. -s and -r announce themselves on standard output and set their
// mode; -l puts its number into `logLevel`. False, after the usage on standard error, when the
// process is to end: help was asked for or an option is not known.
bool ParseCommandLine(int argc, char** argv, unsigned int& logLevel);
