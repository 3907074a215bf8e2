#pragma once

#include <functional>
#include <set>
#include <string>

namespace reader {

// The messages of a command, apart from its output.
class Messages {
 public:
  // Prints to standard error, each text once.
  Messages() = default;
  // Sends problems to `sink`, and prints notes to standard error.
  explicit Messages(std::function<void(const std::string& text)> sink);

  // Reports a fault; the exit status becomes 1.
  void Problem(const std::string& text);
  // Reports a remark; the exit status stays.
  void Note(const std::string& text);
  int Status() const { return problems_ == 0 ? 0 : 1; }

 private:
  void Say(const std::string& text);

  std::function<void(const std::string&)> sink_;
  std::set<std::string> said_;
  int problems_ = 0;
};

}  // namespace reader
