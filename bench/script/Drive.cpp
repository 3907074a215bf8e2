#include "Drive.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "DefaultDrive.h"
#include "Running.h"
#include "TextFile.h"

namespace bench {

namespace {

using std::chrono::milliseconds;

bool AllDigits(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::int64_t NumberOf(std::string_view digits) {
  std::int64_t number = 0;
  (void)std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return number;
}

// Reads "2", "2.5" or "2.125".
bool ReadTime(std::string_view word, milliseconds& at) {
  constexpr std::size_t kMaxSecondsDigits = 7;
  constexpr std::size_t kDecimals = 3;
  const std::size_t point = word.find('.');
  const std::string_view seconds = word.substr(0, point);
  if (!AllDigits(seconds) || seconds.size() > kMaxSecondsDigits) return false;
  std::string decimals = "000";
  if (point != std::string_view::npos) {
    const std::string_view given = word.substr(point + 1);
    if (!AllDigits(given) || given.size() > kDecimals) return false;
    decimals.replace(0, given.size(), given);
  }
  at = milliseconds(NumberOf(seconds) * 1000 + NumberOf(decimals));
  return true;
}

Words WordsBeforeComment(std::string_view line) {
  Words words = SplitWords(line);
  const auto comment =
      std::find_if(words.begin(), words.end(), [](const std::string& word) { return word[0] == '#'; });
  words.erase(comment, words.end());
  return words;
}

// Adds lines to a drive one by one.
class Parser {
 public:
  explicit Parser(Drive& drive) : drive_(drive) {}

  // Adds a line. Returns "" or its error.
  std::string AddLine(const Words& words) {
    constexpr std::size_t kMaxBytes = 4000;
    DriveLine line{};
    std::string error;
    const bool before = words[0] == "before";
    if (!before && !ReadTime(words[0], line.at)) {
      return Quoted(words[0]) + " is not a time: seconds with up to three decimals";
    }
    if (JoinWords(words).size() > kMaxBytes) return Quoted(words.back()) + " makes the line too long";
    if (words.size() == 1) return Quoted(words[0]) + " must be followed by a verb";
    if (!ParseCommand({words.begin() + 1, words.end()}, line.command, error)) return error;
    error = before ? CheckBefore(line.command) : CheckTime(words, line);
    if (error.empty()) error = running_.Take(line.command);
    if (!error.empty()) return error;
    if (before) {
      drive_.before.push_back(line.command);
    } else {
      drive_.lines.push_back(line);
    }
    return {};
  }

 private:
  std::string CheckBefore(const Command& command) const {
    if (!drive_.lines.empty()) return "'before' comes after a time";
    const bool possible = command.verb->when != Verb::kFullRun;
    return possible ? "" : Quoted(NameOf(*command.verb)) + " is only possible after the start";
  }

  std::string CheckTime(const Words& words, const DriveLine& line) const {
    if (line.command.verb->when == Verb::kBefore)
      return Quoted(words[1]) + " is only possible before the start";
    if (drive_.lines.empty()) return {};
    const DriveLine& last = drive_.lines.back();
    if (line.at < last.at) return Quoted(words[0]) + " is earlier than the line before";
    if (NameOf(*last.command.verb) == "quit") return Quoted(words[1]) + " comes after quit";
    return {};
  }

  Drive& drive_;
  Running running_;
};

}  // namespace

std::vector<std::string> ParseDrive(const std::string& name, std::string_view text, Drive& drive) {
  std::vector<std::string> errors;
  drive = {.name = name, .before = {}, .lines = {}};
  Parser parser(drive);
  for (unsigned int number = 1; !text.empty(); ++number) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const Words words = WordsBeforeComment(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    if (words.empty()) continue;
    const std::string error = parser.AddLine(words);
    if (error.empty()) continue;
    errors.emplace_back(name).append(":").append(std::to_string(number)).append(": ").append(error);
  }
  return errors;
}

std::vector<std::string> ReadDrive(const std::string& path, Drive& drive) {
  std::string text;
  if (!ReadTextFile(path, text)) return {path + ": cannot be read"};
  return ParseDrive(path, text, drive);
}

std::vector<std::string> ReadDefaultDrive(Drive& drive) {
  return ParseDrive("default.drive", kDefaultDrive, drive);
}

}  // namespace bench
