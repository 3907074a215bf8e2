#include "Program.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "support/Eventually.h"

namespace {

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string UnusedName(const std::string& directory) {
  static int number = 0;
  return directory + "/program-" + std::to_string(++number);
}

void Redirect(int to, const std::string& path) {
  dup2(open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600), to);
}

int Execute(Arguments words) {
  words.insert(words.begin(), MM_START);
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  execv(argv[0], argv.data());
  return 127;
}

}  // namespace

const std::string& Program::Path() {
  static const std::string path = MM_PROGRAM;
  return path;
}

Program::Program(const std::string& directory, const Arguments& arguments, const Environment& environment,
                 int out, int err)
    : files_(UnusedName(directory)),
      child_([&] {
        umask(0);
        if (chdir(directory.c_str()) != 0) return 126;
        Redirect(STDOUT_FILENO, files_ + ".out");
        Redirect(STDERR_FILENO, files_ + ".err");
        if (out >= 0) dup2(out, STDOUT_FILENO);
        if (err >= 0) dup2(err, STDERR_FILENO);
        for (const auto& [name, value] : environment) setenv(name.c_str(), value.c_str(), 1);
        return Execute(arguments);
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

std::string Program::Out() const {
  return ReadFile(files_ + ".out");
}

std::string Program::Err() const {
  return ReadFile(files_ + ".err");
}
