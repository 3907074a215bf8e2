#pragma once

#include <functional>
#include <string>

// What a command says beside its output.
class Messages {
 public:
  // By default to standard error, each once.
  Messages();
  explicit Messages(std::function<void(const std::string& text)> sink) : sink_(std::move(sink)) {}

  // Something that is not as it should be; the exit status becomes 1.
  void Problem(const std::string& text);
  void Note(const std::string& text) { sink_(text); }
  int Status() const { return problems_ == 0 ? 0 : 1; }
  int Problems() const { return problems_; }

 private:
  std::function<void(const std::string&)> sink_;
  int problems_ = 0;
};
