#include "Installation.h"

#include <sys/wait.h>

#include <cstdio>
#include <filesystem>

namespace fs = std::filesystem;

Installation::Installation() {
  const std::string command =
      "DESTDIR=" + root_.Path("root") + " cmake --install " BUILD_DIRECTORY " --prefix /usr 2>&1";
  std::string output;
  if (Shell(command, output) != 0) problem_ = output;
}

std::set<std::string> Installation::Files() const {
  std::set<std::string> files;
  const fs::path root = Path("");
  for (const auto& entry : fs::recursive_directory_iterator(root)) {
    if (!entry.is_directory()) files.insert("/" + entry.path().lexically_relative(root).string());
  }
  return files;
}

std::string Installation::Unit(const std::string& setting) const {
  const std::string unit = "\n" + Read("/usr/lib/systemd/system/metadatamgr.service");
  const std::string key = "\n" + setting + "=";
  const std::size_t begin = unit.find(key);
  if (begin == std::string::npos) return {};
  const std::size_t value = begin + key.size();
  return unit.substr(value, unit.find('\n', value) - value);
}

int Shell(const std::string& command, std::string& output) {
  std::FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return -1;
  char buffer[4096];
  while (const std::size_t size = std::fread(buffer, 1, sizeof buffer, pipe)) output.append(buffer, size);
  const int status = pclose(pipe);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

bool HasProgram(const std::string& name) {
  std::string ignored;
  return Shell("command -v " + name, ignored) == 0;
}
