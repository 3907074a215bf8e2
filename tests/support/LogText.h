#pragma once

#include <sstream>
#include <string>
#include <vector>

using Lines = std::vector<std::string>;

// A line of the log on standard error without what differs from run to run: "TIME NAME[PID] MASK
// SOURCE:LINE TEXT" becomes "MASK SOURCE: TEXT". Any other line stays as it is.
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

// The finished lines of a text.
inline Lines LinesOf(const std::string& text) {
  Lines lines;
  for (std::size_t from = 0, end = 0; (end = text.find('\n', from)) != std::string::npos; from = end + 1) {
    lines.push_back(text.substr(from, end - from));
  }
  return lines;
}

// The same, those of the log without what differs.
inline Lines LogText(const std::string& text) {
  Lines lines = LinesOf(text);
  for (std::string& line : lines) line = LogTextOf(line);
  return lines;
}

// As one text, of which a failed comparison shows the lines that differ.
inline std::string Joined(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}
