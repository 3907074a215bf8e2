#include "Installation.h"

#include <filesystem>

#include "support/Program.h"

namespace fs = std::filesystem;

Installation::Installation() {
  const Ran ran = RunProgram(
      {"env", "DESTDIR=" + root_.Path("root"), "cmake", "--install", BUILD_DIRECTORY, "--prefix", "/usr"});
  if (ran.status != 0) problem_ = ran.out + ran.said;
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
