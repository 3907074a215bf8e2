#pragma once

#include <sys/resource.h>
#include <sys/types.h>

#include <string>
#include <vector>

namespace bench {

// A process that the director started. It does not outlive the director: the system ends it when the director
// is killed.
struct Child {
  std::string name;
  pid_t id = 0;
  bool ended = false;
  bool toldToEnd = false;  // by SIGTERM or SIGKILL
  int status = 0;          // as wait gives it
  rusage usage = {};       // valid when it ended

  // "exit status 3" or "signal 9"
  std::string HowItEnded() const;
};

class Children {
 public:
  Children() = default;
  ~Children();
  Children(const Children&) = delete;
  Children& operator=(const Children&) = delete;

  // Starts a program, also again after its end. Its path is the first of `arguments`; its output is appended
  // to the file `log`. Returns false and sets `error` when it cannot be started.
  bool Start(const std::string& name, const std::vector<std::string>& arguments, const std::string& log,
             std::string& error);

  // Notes the end of a child and returns it; null when no other child has ended.
  const Child* NextEnded();

  bool AllEnded() const;
  // Null when no child has that name.
  const Child* Find(const std::string& name) const;
  // Sends a signal to a child that still runs.
  void Signal(const std::string& name, int signal);
  // Sends a signal to all children that still run. Returns their names, each after a blank.
  std::string SignalAll(int signal);

 private:
  static bool Signal(Child& child, int signal);

  std::vector<Child> children_;
};

// The largest resident size of a running process so far, in kB; 0 when it cannot be read.
unsigned long PeakMemoryKb(pid_t id);

}  // namespace bench
