#include "Program.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "support/Eventually.h"

namespace {

std::string UnusedName() {
  static int number = 0;
  return "program-" + std::to_string(++number);
}

void Redirect(int to, const std::string& path) {
  dup2(open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600), to);
}

}  // namespace

Program::Program(const TempDir& directory, const Arguments& arguments, const Environment& environment,
                 int out)
    : directory_(directory),
      name_(UnusedName()),
      child_([&] {
        umask(0);
        if (chdir(directory.Path("").c_str()) != 0) return 126;
        Redirect(STDOUT_FILENO, name_ + ".out");
        Redirect(STDERR_FILENO, name_ + ".err");
        if (out >= 0) dup2(out, STDOUT_FILENO);
        for (const auto& [name, value] : environment) setenv(name.c_str(), value.c_str(), 1);
        Arguments words = arguments;
        words.insert(words.begin(), MM_START);
        return Exec(words);
      }),
      id_(child_.Id()) {}

void Program::AwaitExec() const {
  const std::filesystem::path mine = std::filesystem::read_symlink("/proc/self/exe");
  (void)Eventually([&] {
    std::error_code error;
    const auto its = std::filesystem::read_symlink("/proc/" + std::to_string(id_) + "/exe", error);
    return !error && its != mine;
  });
}
