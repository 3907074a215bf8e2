#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace reader {

// The selected sources: "gps,inputs,camera-2". A word is
//   a source as the recordings name it, with or without its number; "-" may stand for a blank
//   a table
//   a group (SelectionHelp)
class Selection {
 public:
  // Returns false and sets `error` if a word is none of these.
  bool Read(const std::string& list, std::string& error);
  bool Selects(std::string_view table, std::string_view source) const;
  // Returns false if no record of this table is selected, whatever its source.
  bool MaySelect(std::string_view table) const;

 private:
  std::vector<std::string> words_;
};

// Help text that lists the groups.
std::string SelectionHelp();

// All words that a selection accepts, without numbers.
std::vector<std::string> SelectionWords();

}  // namespace reader
