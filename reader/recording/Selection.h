#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace reader {

// Which sources are wanted: "gps,inputs,camera-2". A word is
//   a source as the recordings name it, with or without its number; "-" may stand for a blank
//   a table
//   a group (SelectionHelp)
class Selection {
 public:
  // False, and why, when a word is none of these.
  bool Read(const std::string& list, std::string& error);
  bool Selects(std::string_view table, std::string_view source) const;
  // False when no record of this table is selected, whatever its source.
  bool MaySelect(std::string_view table) const;

 private:
  std::vector<std::string> words_;
};

// The groups, for people.
std::string SelectionHelp();

// All words of a selection, numbers apart.
std::vector<std::string> SelectionWords();

}  // namespace reader
