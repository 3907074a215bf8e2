#pragma once

#include <sys/resource.h>
#include <sys/types.h>

#include <string>
#include <vector>

namespace bench {

// A process that the director started. The kernel kills it when the director is killed.
struct Child {
  std::string name;
  pid_t id = 0;
  bool ended = false;
  bool toldToEnd = false;  // with SIGTERM or SIGKILL
  int status = 0;          // as wait4 returns it
  rusage usage = {};       // valid once it has ended

  // "exit status 3" or "signal 9"
  std::string HowItEnded() const;
};

class Children {
 public:
  Children() = default;
  ~Children();
  Children(const Children&) = delete;
  Children& operator=(const Children&) = delete;

  // Starts a program; a program that has ended may be started again. The first of `arguments` is its path.
  // Its output is appended to the file `log`. On failure returns false and sets `error`.
  bool Start(const std::string& name, const std::vector<std::string>& arguments, const std::string& log,
             std::string& error);

  // Returns the next child that has ended, with its status; null when there is none.
  const Child* NextEnded();

  bool AllEnded() const;
  // Null when no child has that name.
  const Child* Find(const std::string& name) const;
  // Sends a signal to a child. Does nothing when the child has ended.
  void Signal(const std::string& name, int signal);
  // Sends a signal to all running children. Returns their names, each after a blank.
  std::string SignalAll(int signal);

 private:
  static bool Signal(Child& child, int signal);

  std::vector<Child> children_;
};

// Returns the peak resident memory of a running process in kB; 0 when it cannot be read.
unsigned long PeakMemoryKb(pid_t id);

}  // namespace bench
