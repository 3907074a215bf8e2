#include "support/Child.h"

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

#include "support/Eventually.h"

int Exec(const std::vector<std::string>& arguments) {
  std::vector<char*> argv;
  argv.reserve(arguments.size() + 1);
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  (void)execvp(argv[0], argv.data());
  return 127;
}

Child::Child(const std::function<int()>& body) : id_(fork()) {
  if (id_ == 0) _exit(body());
  if (id_ < 0) std::abort();
}

Child::Child(const std::vector<std::string>& arguments) : Child([&arguments] { return Exec(arguments); }) {}

Child::~Child() {
  if (id_ <= 0) return;
  Signal(SIGKILL);
  (void)waitpid(id_, nullptr, 0);
}

void Child::Signal(int signal) const {
  if (id_ > 0) (void)kill(id_, signal);
}

bool Child::Ended() const {
  siginfo_t info = {};
  return waitid(P_PID, static_cast<id_t>(id_), &info, WEXITED | WNOHANG | WNOWAIT) != 0 || info.si_pid != 0;
}

int Child::Wait(std::chrono::seconds within) {
  int status = 0;
  if (id_ <= 0 || !Eventually([&] { return waitpid(id_, &status, WNOHANG) != 0; }, within)) return -1;
  id_ = 0;
  return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}
