#pragma once

#include <sstream>
#include <string>
#include <vector>

using Lines = std::vector<std::string>;

// Removes the parts of a log line that differ from run to run: "TIME NAME[PID] MASK SOURCE:LINE TEXT" becomes
// "MASK SOURCE: TEXT". Other lines stay unchanged.
inline std::string LogTextOf(const std::string& line) {
  std::istringstream words(line);
  std::string time;
  std::string process;
  std::string mask;
  std::string source;
  words >> time >> process >> mask >> source;
  const std::size_t number = source.find(':') + 1;
  const bool isLog = time.ends_with('Z') && process.ends_with(']') && number != 0 && number < source.size() &&
                     source.find_first_not_of("0123456789", number) == std::string::npos &&
                     words.get() == ' ';
  return isLog ? mask + " " + source.substr(0, number) +
                     line.substr(static_cast<std::size_t>(words.tellg()) - 1)
               : line;
}

// The complete lines of a text.
inline Lines LinesOf(const std::string& text) {
  Lines lines;
  for (std::size_t from = 0, end = 0; (end = text.find('\n', from)) != std::string::npos; from = end + 1) {
    lines.push_back(text.substr(from, end - from));
  }
  return lines;
}

// The complete lines of a text, log lines as LogTextOf returns them.
inline Lines LogText(const std::string& text) {
  Lines lines = LinesOf(text);
  for (std::string& line : lines) line = LogTextOf(line);
  return lines;
}

// Joins lines into one text. A failed comparison then shows the lines that differ.
inline std::string Joined(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}
