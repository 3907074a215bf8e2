#include "Children.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fstream>

namespace bench {

namespace {

constexpr int kCannotRun = 127;

// Runs in the child. Its own process group keeps Ctrl-C away from it; its signal settings are reset to the
// defaults.
[[noreturn]] void RunProgram(char* const* arguments, int log, pid_t parent) {
  (void)setpgid(0, 0);
  (void)prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent) _exit(kCannotRun);  // the parent ended before prctl
  sigset_t none;
  sigemptyset(&none);
  (void)sigprocmask(SIG_SETMASK, &none, nullptr);
  (void)signal(SIGPIPE, SIG_DFL);
  const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
  if (dup2(nothing, STDIN_FILENO) >= 0 && dup2(log, STDOUT_FILENO) >= 0 && dup2(log, STDERR_FILENO) >= 0) {
    (void)execv(arguments[0], arguments);
  }
  _exit(kCannotRun);
}

}  // namespace

std::string Child::HowItEnded() const {
  if (WIFSIGNALED(status)) return "signal " + std::to_string(WTERMSIG(status));
  return "exit status " + std::to_string(WEXITSTATUS(status));
}

Children::~Children() {
  (void)SignalAll(SIGKILL);
  for (const Child& child : children_) {
    if (!child.ended) (void)waitpid(child.id, nullptr, 0);
  }
}

bool Children::Start(const std::string& name, const std::vector<std::string>& arguments,
                     const std::string& log, std::string& error) {
  if (access(arguments[0].c_str(), X_OK) != 0) {
    error = "there is no program " + arguments[0];
    return false;
  }
  const int logFd = open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0640);
  if (logFd < 0) {
    error = "cannot write " + log + ": " + std::strerror(errno);
    return false;
  }
  std::vector<char*> pointers;
  pointers.reserve(arguments.size() + 1);
  for (const std::string& argument : arguments) pointers.push_back(const_cast<char*>(argument.c_str()));
  pointers.push_back(nullptr);
  const pid_t parent = getpid();
  const pid_t id = fork();
  if (id == 0) RunProgram(pointers.data(), logFd, parent);
  close(logFd);
  if (id < 0) {
    error = std::string("no new process: ") + std::strerror(errno);
    return false;
  }
  std::erase_if(children_, [&name](const Child& child) { return child.ended && child.name == name; });
  children_.push_back({name, id});
  return true;
}

const Child* Children::NextEnded() {
  for (Child& child : children_) {
    if (child.ended || wait4(child.id, &child.status, WNOHANG, &child.usage) != child.id) continue;
    child.ended = true;
    return &child;
  }
  return nullptr;
}

bool Children::AllEnded() const {
  return std::all_of(children_.begin(), children_.end(), [](const Child& child) { return child.ended; });
}

const Child* Children::Find(const std::string& name) const {
  const auto found = std::find_if(children_.begin(), children_.end(),
                                  [&name](const Child& child) { return child.name == name; });
  return found == children_.end() ? nullptr : &*found;
}

bool Children::Signal(Child& child, int signal) {
  if (child.ended || kill(child.id, signal) != 0) return false;
  if (signal == SIGTERM || signal == SIGKILL) child.toldToEnd = true;
  return true;
}

void Children::Signal(const std::string& name, int signal) {
  for (Child& child : children_) {
    if (child.name == name) (void)Signal(child, signal);
  }
}

std::string Children::SignalAll(int signal) {
  std::string names;
  for (Child& child : children_) {
    if (Signal(child, signal)) names += " " + child.name;
  }
  return names;
}

unsigned long PeakMemoryKb(pid_t id) {
  std::ifstream status("/proc/" + std::to_string(id) + "/status");
  std::string field;
  while (status >> field) {
    unsigned long kb = 0;
    if (field == "VmHWM:" && status >> kb) return kb;
  }
  return 0;
}

}  // namespace bench
