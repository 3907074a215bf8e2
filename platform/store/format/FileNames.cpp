#include "FileNames.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <functional>
#include <memory>

namespace store {
namespace {

constexpr std::string_view kSuffix = ".db";
constexpr std::string_view kSuffixBeside = ".db-";  // of a WAL and other files of SQLite
constexpr std::size_t kMinDigits = 6;
constexpr std::size_t kMaxDigits = 9;
constexpr std::uint32_t kMaxNumber = 999'999'999;

// Removes the number at the front of the name and returns it; 0 if there is none.
std::uint32_t TakeNumber(std::string_view& name) {
  std::size_t digits = 0;
  while (digits < name.size() && name[digits] >= '0' && name[digits] <= '9') ++digits;
  std::uint32_t number = 0;
  if (digits < kMinDigits || digits > kMaxDigits || (digits > kMinDigits && name[0] == '0')) return 0;
  (void)std::from_chars(name.data(), name.data() + digits, number);
  name.remove_prefix(digits);
  return number;
}

}  // namespace

std::optional<RecordingName> ParseRecordingName(std::string_view path) {
  if (!path.ends_with(kSuffix)) return std::nullopt;
  std::string_view base = path.substr(0, path.size() - kSuffix.size());
  const std::size_t dot = base.rfind('.');
  if (dot == std::string_view::npos) return std::nullopt;
  std::string_view digits = base.substr(dot + 1);
  const std::uint32_t number = TakeNumber(digits);
  if (number == 0 || !digits.empty()) return std::nullopt;
  return RecordingName{path.substr(0, dot), number};
}

FileNames::FileNames(std::string base) : base_(std::move(base)) {
  const std::size_t slash = base_.rfind('/');
  directory_ = slash == std::string::npos ? "." : base_.substr(0, slash + 1);
  prefix_ = NameOf(base_) + ".";
}

std::string FileNames::PathOf(std::uint32_t number) const {
  char digits[16];
  (void)std::snprintf(digits, sizeof digits, ".%06u", static_cast<unsigned int>(number));
  return base_ + digits + std::string(kSuffix);
}

int FileNames::List(Numbers& numbers) const {
  struct CloseDirectory {
    void operator()(DIR* directory) const { (void)closedir(directory); }
  };
  const std::unique_ptr<DIR, CloseDirectory> directory(opendir(directory_.c_str()));
  if (directory == nullptr) return errno;
  numbers = {};
  while (const dirent* entry = readdir(directory.get())) {
    bool isRecording = false;
    const std::uint32_t number = NumberOf(entry->d_name, isRecording);
    if (number != 0) numbers.taken.push_back(number);
    if (isRecording) numbers.recordings.push_back(number);
  }
  std::sort(numbers.recordings.begin(), numbers.recordings.end(), std::greater<>());
  std::sort(numbers.taken.begin(), numbers.taken.end());
  return 0;
}

std::uint32_t FileNames::Numbers::FreeAfter(std::uint32_t number) const {
  std::uint32_t free = number < kMaxNumber ? number + 1 : 1;
  for (auto next = std::lower_bound(taken.begin(), taken.end(), free); next != taken.end() && *next <= free;
       ++next) {
    if (*next == free) ++free;
  }
  if (free <= kMaxNumber) return free;
  // A directory cannot hold all numbers, so one of the lowest is free.
  free = 1;
  for (const std::uint32_t next : taken) {
    if (next == free) ++free;
  }
  return free;
}

// 0 if the name is neither a recording's nor that of a file beside one, such as its WAL.
std::uint32_t FileNames::NumberOf(std::string_view name, bool& isRecording) const {
  isRecording = false;
  if (!name.starts_with(prefix_)) return 0;
  name.remove_prefix(prefix_.size());
  const std::uint32_t number = TakeNumber(name);
  isRecording = number != 0 && name == kSuffix;
  return isRecording || name.starts_with(kSuffixBeside) ? number : 0;
}

bool FileNames::IsOneOf(const std::string& path) const {
  bool isRecording = false;
  if (NumberOf(NameOf(path), isRecording) == 0) return false;
  FileIdentity ours;
  FileIdentity its;
  return Identify(directory_, ours) != 0 || Identify(path.substr(0, path.rfind('/') + 1), its) != 0 ||
         ours.SameFile(its);
}

int Identify(const std::string& path, FileIdentity& identity) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return errno;
  identity.device = status.st_dev;
  identity.inode = status.st_ino;
  identity.bytes = static_cast<std::uint64_t>(status.st_size);
  return 0;
}

std::string NameOf(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

}  // namespace store
