#include "Surroundings.h"

#include <sys/mman.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "SentLog.h"
#include "system/KvGetenv.h"

namespace bench {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kLongestEndpoint = 32;
constexpr const char* kVariables[] = {"METADATA_ROOT", "LINX_IPC_DIR", "METADATA_SHM", "LOG_TARGET"};

bool IsSet(const char* variable) {
  return KvGetenv(variable) != nullptr;
}

void SetWhereMissing(const char* variable, const std::string& value) {
  (void)setenv(variable, value.c_str(), 0);
}

bool TooLongForSockets(const std::string& directory) {
  return directory.size() + 1 + kLongestEndpoint >= sizeof sockaddr_un{}.sun_path;
}

bool CreateDirectory(const std::string& path, std::string& error) {
  std::error_code failure;
  fs::create_directories(path, failure);
  if (fs::is_directory(path)) return true;
  error = "cannot create " + path + (failure ? ": " + failure.message() : "");
  return false;
}

std::string InShellQuotes(const std::string& text) {
  if (text.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789/._-") ==
      std::string::npos) {
    return text;
  }
  std::string quoted = "'";
  for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

}  // namespace

Surroundings::Surroundings(const std::string& directory) {
  std::error_code failure;
  directory_ = fs::absolute(directory, failure).lexically_normal().string();
  if (failure) directory_ = directory;
  while (directory_.size() > 1 && directory_.back() == '/') directory_.pop_back();
}

Surroundings::~Surroundings() {
  if (!sharedRecord_.empty()) (void)shm_unlink(sharedRecord_.c_str());
  std::error_code ignored;
  if (!temporary_.empty()) fs::remove_all(temporary_, ignored);
  if (!endpointLink_.empty()) fs::remove(endpointLink_, ignored);
}

bool Surroundings::Prepare(std::string& error) {
  if (!CreateDirectory(directory_ + "/log", error)) return false;
  if (!IsSet("METADATA_ROOT") && !CreateDirectory(directory_ + "/mnt", error)) return false;
  if (!IsSet("LINX_IPC_DIR") && !PrepareEndpoints(error)) return false;
  if (!IsSet("METADATA_SHM")) sharedRecord_ = "/metadata-bench-" + std::to_string(getpid());
  SetWhereMissing("METADATA_ROOT", directory_ + "/mnt");
  SetWhereMissing("METADATA_SHM", sharedRecord_);
  SetWhereMissing("LOG_TARGET", "stderr");
  SetWhereMissing(kSentDirectoryVariable, directory_ + "/sent");
  return true;
}

bool Surroundings::PrepareEndpoints(std::string& error) {
  const std::string wanted = directory_ + "/ipc";
  if (!TooLongForSockets(wanted)) {
    SetWhereMissing("LINX_IPC_DIR", wanted);  // the first endpoint creates it with the right permissions
    return true;
  }
  std::error_code failure;
  const fs::path target = fs::read_symlink(wanted, failure);
  if (!failure && fs::is_directory(target, failure)) {  // the bench still runs, or was killed
    SetWhereMissing("LINX_IPC_DIR", target.string());
    return true;
  }
  fs::remove(wanted, failure);
  char name[] = "/tmp/vehiclebench-XXXXXX";
  if (mkdtemp(name) == nullptr) {
    error = std::string("cannot create a directory under /tmp: ") + std::strerror(errno);
    return false;
  }
  temporary_ = name;
  fs::create_directory_symlink(temporary_, wanted, failure);
  if (failure) {
    error = "cannot create " + wanted + ": " + failure.message();
    return false;
  }
  endpointLink_ = wanted;
  SetWhereMissing("LINX_IPC_DIR", temporary_);
  return true;
}

void Surroundings::BeginSentLists() const {
  std::error_code ignored;
  fs::remove_all(directory_ + "/sent", ignored);
  fs::create_directory(directory_ + "/sent", ignored);
}

void Surroundings::UseEndpoints() const {
  const std::string wanted = directory_ + "/ipc";
  std::error_code failure;
  const fs::path target = fs::read_symlink(wanted, failure);
  SetWhereMissing("LINX_IPC_DIR", failure ? wanted : target.string());
}

std::string Surroundings::Settings() {
  std::string settings;
  for (const char* variable : kVariables) {
    const char* value = KvGetenv(variable);
    if (value == nullptr) continue;
    if (!settings.empty()) settings += ' ';
    settings += std::string(variable) + "=" + InShellQuotes(value);
  }
  return settings;
}

}  // namespace bench
