#pragma once

#include <sys/resource.h>
#include <unistd.h>

// While the object lives this process cannot open descriptors.
class NoDescriptors {
 public:
  NoDescriptors() {
    const int next = dup(STDERR_FILENO);
    close(next);
    (void)getrlimit(RLIMIT_NOFILE, &before_);
    const rlimit none{static_cast<rlim_t>(next), before_.rlim_max};
    (void)setrlimit(RLIMIT_NOFILE, &none);
  }
  ~NoDescriptors() { (void)setrlimit(RLIMIT_NOFILE, &before_); }
  NoDescriptors(const NoDescriptors&) = delete;
  NoDescriptors& operator=(const NoDescriptors&) = delete;

 private:
  rlimit before_{};
};
