#pragma once

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

inline double ThreadSeconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

inline double Median(std::vector<double> numbers) {
  std::sort(numbers.begin(), numbers.end());
  return numbers[numbers.size() / 2];
}

[[noreturn]] inline void Fail(const char* what) {
  std::perror(what);
  std::exit(1);
}

// A directory in memory, where a sync costs nothing; the destructor removes it.
class Scratch {
 public:
  Scratch() {
    if (mkdtemp(path_.data()) == nullptr) Fail("mkdtemp");
  }
  ~Scratch() { std::filesystem::remove_all(path_); }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  const std::string& Path() const { return path_; }
  std::string Path(const char* name) const { return path_ + "/" + name; }

 private:
  std::string path_ = "/dev/shm/metadatamgr-XXXXXX";
};
