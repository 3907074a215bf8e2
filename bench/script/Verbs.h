#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "Words.h"

namespace bench {

// A command that the bench accepts from a drive or another terminal. One table, VerbTable.cpp, defines the
// words of each command, the process that performs it, and its help.

struct Verb {
  enum When {
    kAlways,
    kFullRun,  // only after MetadataMgr has started
    kBefore    // only before MetadataMgr starts
  };

  // Lower-case words are literal, upper-case words are argument types (ArgumentTypes.h). An argument in
  // brackets is optional: "record start [ID]". With "..." at the end all arguments may be repeated.
  const char* pattern;
  // The endpoint name of the process that performs the command, or kNamedServer.
  const char* performer;
  const char* help;
  When when = kAlways;
  // Checks the arguments together. On failure returns false and sets `error`.
  bool (*check)(const Words& arguments, std::string& error) = nullptr;
};

// The first argument names the performer.
constexpr const char* kNamedServer = "SERVER";

std::span<const Verb> Verbs();

// The literal words of a verb, with one blank between them. Actions have this name.
std::string NameOf(const Verb& verb);

// A command without errors.
struct Command {
  const Verb* verb = nullptr;
  Words words;      // all words of the line
  Words arguments;  // the words after the verb
};

// Returns false when the words are not a command; `error` then names the wrong word, and `command` does not
// change.
bool ParseCommand(const Words& words, Command& command, std::string& error);

// The endpoint name of the process that performs a command.
std::string PerformerOf(const Command& command);

// The help text about verbs and argument types.
std::string VerbHelp();

}  // namespace bench
