#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

// In a child: becomes a program, which is looked for where the shell would. The exit status where that
// cannot be.
int Exec(const std::vector<std::string>& arguments);

// A child process; killed at the end if it still runs. It inherits the parent's descriptors, so
// endpoints that are to be free when the parent closes them are made after it.
class Child {
 public:
  // Runs `body`, whose result is the exit status.
  explicit Child(const std::function<int()>& body);
  // Runs a program with its arguments.
  explicit Child(const std::vector<std::string>& arguments);
  ~Child();
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  pid_t Id() const { return id_; }
  void Signal(int signal) const;
  // Waits for its end: the exit status, 128 plus the signal that ended it, or -1 when it still ran
  // after that time and was killed.
  int Wait(std::chrono::seconds within = std::chrono::seconds(20));
  // Does not wait.
  bool Ended() const;

 private:
  pid_t id_;
};
