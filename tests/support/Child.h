#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

// Runs in a child: becomes a program, which is searched in PATH. Returns an exit status when that fails.
int Exec(const std::vector<std::string>& arguments);

// A child process. The destructor kills it when it still runs. It inherits the parent's descriptors: create
// an endpoint after the child when the parent must be able to close it.
class Child {
 public:
  // Runs `body`. Its result is the exit status.
  explicit Child(const std::function<int()>& body);
  // Runs a program with its arguments.
  explicit Child(const std::vector<std::string>& arguments);
  ~Child();
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  pid_t Id() const { return id_; }
  void Signal(int signal) const;
  // Waits for the end. Returns the exit status, 128 plus the number of the signal, or -1 when the child
  // still runs after that time.
  int Wait(std::chrono::seconds within = std::chrono::seconds(20));
  // Whether the child has ended. Does not wait.
  bool Ended() const;

 private:
  pid_t id_;
};
