#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "Words.h"

// What can be asked of the bench, in a drive and from another terminal. Everything is derived from
// one table: what a line may say, who performs it, the help.

struct Verb {
  // Small words stand for themselves, capital ones for arguments (ArgumentType), in brackets those
  // that may be left out: "record start [ID]". With "..." at the end all arguments may come again.
  const char* pattern;
  // The endpoint name of the process that performs it, or kNamedServer.
  const char* performer;
  const char* help;
};

// The performer is the server that the first argument names.
constexpr const char* kNamedServer = "SERVER";

struct ArgumentType {
  const char* name;
  bool (*accepts)(const std::string& word);
  const char* what;
};

std::span<const Verb> Verbs();

// The small words of a verb, with one blank between them; the name under which its action is found.
std::string NameOf(const Verb& verb);

// A line that was found good.
struct Command {
  const Verb* verb = nullptr;
  Words words;      // all of them
  Words arguments;  // those behind the verb
};

// False when the words are not a command; `error` then names the word that is wrong, and `command`
// is unchanged.
bool ParseCommand(const Words& words, Command& command, std::string& error);

// The endpoint name of the process that performs a command.
std::string PerformerOf(const Command& command);

// The bit of a vehicle input by its name ("lights"); 0 when there is none.
std::uint32_t InputBit(const std::string& word);

// The verbs and argument types, for people.
std::string VerbHelp();
