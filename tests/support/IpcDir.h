#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

#include "support/TempDir.h"

// A separate endpoint directory, used while the object lives.
class IpcDir {
 public:
  IpcDir() {
    Use(directory_.Path("ipc"));
    std::filesystem::create_directory(directory_.Path("ipc"));
    std::filesystem::permissions(directory_.Path("ipc"), std::filesystem::perms(0755));  // ignores the umask
  }
  ~IpcDir() { unsetenv("LINX_IPC_DIR"); }
  IpcDir(const IpcDir&) = delete;
  IpcDir& operator=(const IpcDir&) = delete;

  void Use(const std::string& path) { setenv("LINX_IPC_DIR", path.c_str(), 1); }
  // A path in the directory that holds the endpoint directory.
  std::string Beside(std::string_view name) const { return directory_.Path(name); }
  // The path of an endpoint's socket.
  static std::string File(const std::string& name) {
    return std::string(std::getenv("LINX_IPC_DIR")) + "/" + name;
  }

 private:
  TempDir directory_;
};
