#include "Verbs.h"

#include <algorithm>
#include <cctype>
#include <vector>

#include "ArgumentTypes.h"

namespace bench {

namespace {

bool IsSmall(const std::string& word) {
  return std::islower(static_cast<unsigned char>(word[0])) != 0;
}

// A verb and the parts of its pattern.
struct Pattern {
  explicit Pattern(const Verb& row) : verb(&row) {
    for (std::string word : SplitWords(row.pattern)) {
      if (IsSmall(word)) {
        verbWords.push_back(word);
        continue;
      }
      if (word == "...") {
        repeated = true;
        continue;
      }
      if (word[0] != '[') ++needed;
      std::erase_if(word, [](char c) { return c == '[' || c == ']'; });
      arguments.push_back(word);
    }
  }

  const Verb* verb;
  Words verbWords;
  Words arguments;         // names of argument types
  std::size_t needed = 0;  // number of required arguments
  bool repeated = false;   // all arguments may be repeated
};

// The number of words that the line and the verb share at the begin.
std::size_t WordsInCommon(const Words& line, const Words& verb) {
  const auto ends = std::mismatch(line.begin(), line.end(), verb.begin(), verb.end());
  return static_cast<std::size_t>(ends.first - line.begin());
}

const std::vector<Pattern>& Patterns() {
  static const std::vector<Pattern> kPatterns(Verbs().begin(), Verbs().end());
  return kPatterns;
}

// The longest verb that the line begins with; null when there is none.
const Pattern* FindVerb(const Words& words) {
  const Pattern* found = nullptr;
  std::size_t most = 0;
  for (const Pattern& pattern : Patterns()) {
    const Words& verbWords = pattern.verbWords;
    if (verbWords.size() <= most || WordsInCommon(words, verbWords) != verbWords.size()) continue;
    found = &pattern;
    most = verbWords.size();
  }
  return found;
}

// Names the first word that no verb continues with.
std::string UnknownVerb(const Words& words) {
  std::size_t common = 0;
  Words next;
  for (const Pattern& pattern : Patterns()) {
    const Words& verbWords = pattern.verbWords;
    const std::size_t here = WordsInCommon(words, verbWords);
    if (here > common) next.clear();
    common = std::max(common, here);
    const bool goesOn = here == common && common > 0;
    if (goesOn && (next.empty() || next.back() != verbWords[common])) next.push_back(verbWords[common]);
  }
  if (common == 0) return Quoted(words[0]) + " is not a verb";
  std::string wanted = next[0];
  for (std::size_t i = 1; i < next.size(); ++i) wanted += " or " + next[i];
  if (common == words.size()) return Quoted(words.back()) + " must be followed by " + wanted;
  return Quoted(words[common]) + " is wrong: " + Quoted(words[common - 1]) + " must be followed by " + wanted;
}

bool CheckArguments(const Pattern& pattern, const Words& words, const Words& arguments, std::string& error) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (i >= pattern.arguments.size() && !pattern.repeated) {
      error = Quoted(arguments[i]) + " is one word too many";
      return false;
    }
    const std::string& name = pattern.arguments[i % pattern.arguments.size()];
    const ArgumentType* type = FindArgumentType(name);
    if (type->Accepts(arguments[i])) continue;
    error = Quoted(arguments[i]) + " is not a " + name + ": " + type->Describe();
    return false;
  }
  const std::size_t given = arguments.size();
  if (given >= pattern.needed && (!pattern.repeated || given % pattern.needed == 0)) return true;
  error =
      Quoted(words.back()) + " must be followed by a " + pattern.arguments[given % pattern.arguments.size()];
  return false;
}

std::string HelpRow(const std::string& name, const std::string& text) {
  constexpr std::size_t kColumn = 22;
  const bool fits = name.size() < kColumn;
  const std::string gap = fits ? std::string(kColumn - name.size(), ' ') : "\n  " + std::string(kColumn, ' ');
  return "  " + name + gap + text + "\n";
}

}  // namespace

std::string NameOf(const Verb& verb) {
  return JoinWords(Pattern(verb).verbWords);
}

bool ParseCommand(const Words& words, Command& command, std::string& error) {
  if (words.empty()) {
    error = "a verb is missing";
    return false;
  }
  const Pattern* pattern = FindVerb(words);
  if (pattern == nullptr) {
    error = UnknownVerb(words);
    return false;
  }
  const Words arguments(words.begin() + static_cast<std::ptrdiff_t>(pattern->verbWords.size()), words.end());
  if (!CheckArguments(*pattern, words, arguments, error)) return false;
  const Verb* verb = pattern->verb;
  if (verb->check != nullptr && !verb->check(arguments, error)) return false;
  command = {verb, words, arguments};
  return true;
}

std::string PerformerOf(const Command& command) {
  const std::string performer = command.verb->performer;
  return performer == kNamedServer ? command.arguments[0] : performer;
}

std::string VerbHelp() {
  std::string help = "Verbs:\n";
  for (const Verb& verb : Verbs()) help += HelpRow(verb.pattern, verb.help);
  help +=
      "In a drive the lines \"before VERB ARGUMENTS\" come first. They are done when the servers have\n"
      "started and MetadataMgr has not.\n";
  help += "Arguments:\n";
  for (const ArgumentType& type : ArgumentTypes()) help += HelpRow(type.name, type.Describe());
  return help;
}

}  // namespace bench
