#pragma once

#include <sys/resource.h>
#include <sys/types.h>

#include <string>
#include <vector>

// The processes that the director started. None outlives it: the system ends them when the
// director is killed.
struct Child {
  std::string name;
  pid_t id = 0;
  bool ended = false;
  int status = 0;     // as wait gives it
  rusage usage = {};  // valid when it ended

  // "exit status 3" or "signal 9"
  std::string HowItEnded() const;
};

class Children {
 public:
  Children() = default;
  ~Children();
  Children(const Children&) = delete;
  Children& operator=(const Children&) = delete;

  // Starts a program, also one that has ended, whose path is the first of `arguments`; what it writes is
  // appended to the file `log`. False and why not.
  bool Start(const std::string& name, const std::vector<std::string>& arguments, const std::string& log,
             std::string& error);

  // Takes note of a child that has ended; null when no further one has.
  const Child* NextEnded();

  bool AllEnded() const;
  // Null when there is none of that name.
  const Child* Find(const std::string& name) const;
  // Sends a signal to a child that still runs.
  void Signal(const std::string& name, int signal) const;
  // The same for all of them; their names, each after a blank.
  std::string SignalAll(int signal) const;

 private:
  std::vector<Child> children_;
};

// The largest resident size of a running process so far, in kB; 0 when it cannot be read.
unsigned long PeakMemoryKb(pid_t id);
