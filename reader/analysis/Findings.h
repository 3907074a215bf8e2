#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace reader {

// Findings of a check. Keeps the first finding of each kind and place, and counts the others.
class Findings {
 public:
  // `where` is a file, or a file and a table.
  void Add(const std::string& where, const char* kind, const std::string& text);
  bool Empty() const { return found_.empty(); }
  std::size_t Count() const { return found_.size(); }
  struct Finding {
    std::string where;
    std::string text;
    std::int64_t more = 0;  // further findings of the same kind and place
  };
  const std::vector<Finding>& All() const { return found_; }
  // One line for each finding, in the order of the calls to Add.
  std::string Text() const;

 private:
  std::vector<Finding> found_;
  std::map<std::pair<std::string, std::string>, std::size_t> places_;
};

}  // namespace reader
