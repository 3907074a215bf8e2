#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace reader {

// What a check found: of each kind the first, and how many more.
class Findings {
 public:
  // `where` is a file, or a file and a table. Findings with the same kind and place are counted.
  void Add(const std::string& where, const char* kind, const std::string& text);
  bool Empty() const { return found_.empty(); }
  std::size_t Count() const { return found_.size(); }
  struct Finding {
    std::string where;
    std::string text;
    std::int64_t more = 0;  // of the same kind
  };
  const std::vector<Finding>& All() const { return found_; }
  // One line each, in the order in which they were found.
  std::string Text() const;

 private:
  std::vector<Finding> found_;
  std::map<std::pair<std::string, std::string>, std::size_t> places_;
};

}  // namespace reader
