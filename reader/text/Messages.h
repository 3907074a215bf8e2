#pragma once

#include <functional>
#include <set>
#include <string>

namespace reader {

// What a command says beside its output.
class Messages {
 public:
  // To standard error, each once.
  Messages() = default;
  // Problems to `sink`, notes to standard error.
  explicit Messages(std::function<void(const std::string& text)> sink);

  // Something that is not as it should be; the exit status becomes 1.
  void Problem(const std::string& text);
  // Something worth knowing.
  void Note(const std::string& text);
  int Status() const { return problems_ == 0 ? 0 : 1; }

 private:
  void Say(const std::string& text);

  std::function<void(const std::string&)> sink_;
  std::set<std::string> said_;
  int problems_ = 0;
};

}  // namespace reader
