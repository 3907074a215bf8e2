#include "Verbs.h"

#include <algorithm>
#include <cctype>
#include <cstdint>

#include "Processes.h"

namespace {

constexpr Verb kVerbs[] = {
    {"bookmark", "Bench", "Sends a bookmark and waits for the notice that one was taken."},
    {"died PROCESS", "StateMgr", "Tells all processes but this one that it died."},
    {"lasttick", "Bench", "Asks MetadataMgr for the last system tick of its store."},
    {"loglevel [MASK]", "Bench", "Asks MetadataMgr for its log level; with a mask, sets it."},
    {"ping", "Bench", "Asks MetadataMgr whether it is there."},
    {"quit", "Bench", "Ends the drive: shuts all processes down."},
    {"record start [ID]", "StreamMgr", "Begins a recording event; without an id it gets one."},
    {"record stop", "StreamMgr", "Ends the recording event."},
    {"restarted PROCESS", "StateMgr", "Tells all processes but this one that it was restarted."},
};

bool IsMask(const std::string& word) {
  std::uint32_t mask = 0;
  return ReadNumber(word, mask);
}

bool IsProcess(const std::string& word) {
  std::uint32_t process = 0;
  return ReadProcess(word, process);
}

bool IsRecordingId(const std::string& word) {
  constexpr std::size_t kMaxBytes = 255;
  return !word.empty() && word.size() <= kMaxBytes;
}

constexpr ArgumentType kArgumentTypes[] = {
    {"ID", IsRecordingId, "a name of a recording event, at most 255 bytes"},
    {"MASK", IsMask, "a number of 32 bits, decimal or 0x..."},
    {"PROCESS", IsProcess, "a process of the system by name (GpsHal, ...) or number"},
};

bool IsSmall(const std::string& word) {
  return std::islower(static_cast<unsigned char>(word[0])) != 0;
}

// A verb's pattern taken apart.
struct Pattern {
  explicit Pattern(const Verb& verb) {
    for (std::string word : SplitWords(verb.pattern)) {
      if (IsSmall(word)) {
        verbWords.push_back(word);
        continue;
      }
      if (word[0] != '[') ++needed;
      std::erase_if(word, [](char c) { return c == '[' || c == ']'; });
      arguments.push_back(word);
    }
  }

  Words verbWords;
  Words arguments;         // names of argument types
  std::size_t needed = 0;  // arguments that must be there
};

// How many of the verb's words the line begins with.
std::size_t WordsInCommon(const Words& line, const Words& verb) {
  const auto ends = std::mismatch(line.begin(), line.end(), verb.begin(), verb.end());
  return static_cast<std::size_t>(ends.first - line.begin());
}

// Names the first word that no verb goes on with.
std::string UnknownVerb(const Words& words) {
  std::size_t common = 0;
  Words next;
  for (const Verb& verb : kVerbs) {
    const Words verbWords = Pattern(verb).verbWords;
    const std::size_t here = WordsInCommon(words, verbWords);
    if (here > common) next.clear();
    common = std::max(common, here);
    if (here == common && common > 0) next.push_back(verbWords[common]);
  }
  if (common == 0) return Quoted(words[0]) + " is not a verb";
  std::string wanted = next[0];
  for (std::size_t i = 1; i < next.size(); ++i) wanted += " or " + next[i];
  if (common == words.size()) return Quoted(words.back()) + " must be followed by " + wanted;
  return Quoted(words[common]) + " is wrong: " + Quoted(words[common - 1]) + " must be followed by " + wanted;
}

const ArgumentType* FindArgumentType(const std::string& name) {
  const auto found = std::find_if(std::begin(kArgumentTypes), std::end(kArgumentTypes),
                                  [&name](const ArgumentType& type) { return name == type.name; });
  return found == std::end(kArgumentTypes) ? nullptr : found;
}

bool CheckArguments(const Pattern& pattern, const Words& words, const Words& arguments, std::string& error) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (i == pattern.arguments.size()) {
      error = Quoted(arguments[i]) + " is one word too many";
      return false;
    }
    const ArgumentType* type = FindArgumentType(pattern.arguments[i]);
    if (type != nullptr && type->accepts(arguments[i])) continue;
    error = Quoted(arguments[i]) + " is not a " + pattern.arguments[i];
    if (type != nullptr) error += std::string(": ") + type->what;
    return false;
  }
  if (arguments.size() >= pattern.needed) return true;
  error = Quoted(words.back()) + " must be followed by a " + pattern.arguments[arguments.size()];
  return false;
}

std::string HelpRow(const std::string& name, const char* text) {
  constexpr std::size_t kColumn = 22;
  return "  " + name + std::string(kColumn - std::min(name.size(), kColumn - 1), ' ') + text + "\n";
}

}  // namespace

std::span<const Verb> Verbs() {
  return kVerbs;
}

std::span<const ArgumentType> ArgumentTypes() {
  return kArgumentTypes;
}

std::string NameOf(const Verb& verb) {
  return JoinWords(Pattern(verb).verbWords);
}

bool ParseCommand(const Words& words, Command& command, std::string& error) {
  if (words.empty()) {
    error = "a verb is missing";
    return false;
  }
  for (const Verb& verb : kVerbs) {
    const Pattern pattern(verb);
    const std::size_t verbWords = pattern.verbWords.size();
    if (WordsInCommon(words, pattern.verbWords) != verbWords) continue;
    const Words arguments(words.begin() + static_cast<std::ptrdiff_t>(verbWords), words.end());
    if (!CheckArguments(pattern, words, arguments, error)) return false;
    command = {&verb, words, arguments};
    return true;
  }
  error = UnknownVerb(words);
  return false;
}

std::string VerbHelp() {
  std::string help = "Verbs:\n";
  for (const Verb& verb : kVerbs) help += HelpRow(verb.pattern, verb.help);
  help += "Arguments:\n";
  for (const ArgumentType& type : kArgumentTypes) help += HelpRow(type.name, type.what);
  return help;
}
