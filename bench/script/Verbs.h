#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "Words.h"

namespace bench {

// What the bench can be asked to do, in a drive and from another terminal. One table (VerbTable.cpp) says
// what a line may say, which process performs it, and the help.

struct Verb {
  enum When {
    kAlways,
    kFullRun,  // not before the start of MetadataMgr
    kBefore    // only before it
  };

  // Small words stand for themselves, capital words for arguments (ArgumentTypes.h). An argument in brackets
  // may be missing: "record start [ID]". With "..." at the end all arguments may be repeated.
  const char* pattern;
  // The endpoint name of the process that performs it, or kNamedServer.
  const char* performer;
  const char* help;
  When when = kAlways;
  // A check of the arguments together. Returns false and sets `error`.
  bool (*check)(const Words& arguments, std::string& error) = nullptr;
};

// The performer is the server that the first argument names.
constexpr const char* kNamedServer = "SERVER";

std::span<const Verb> Verbs();

// The small words of a verb with one blank between them. Actions have this name.
std::string NameOf(const Verb& verb);

// A line without errors.
struct Command {
  const Verb* verb = nullptr;
  Words words;      // all words of the line
  Words arguments;  // the words behind the verb
};

// Returns false when the words are not a command: `error` then names the wrong word, and `command` is
// unchanged.
bool ParseCommand(const Words& words, Command& command, std::string& error);

// The endpoint name of the process that performs a command.
std::string PerformerOf(const Command& command);

// The help text about verbs and argument types.
std::string VerbHelp();

}  // namespace bench
