#pragma once

#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "store/DataStoreNormal.h"
#include "store/StoreFixture.h"

// What was reported, and by when the store has promised to have it on the medium.
struct Report {
  static constexpr std::size_t kNever = std::numeric_limits<std::size_t>::max();

  const char* table;
  unsigned int mark;  // its sender's tick, different in each; 0 where the table has none
  unsigned int tick;  // when it was reported
  bool critical;
  std::size_t call;              // number of the call that reported it
  std::size_t dueCall = kNever;  // number of the call after which it is durable
};

// A store in use: one call after the other at times of the test's choosing.
class Usage {
 public:
  // The clock is the usage's own.
  Usage(const std::string& basePath, StoreOptions options);

  bool Open();
  void Turn(unsigned int ms);  // of the main loop: time passes, then a tick is told
  void Temperature();
  void Text(std::size_t size);
  void Bookmark();
  void Covert();
  void Close();

  unsigned int Now() const { return clock_.tick; }
  std::size_t Calls() const { return calls_; }
  const std::vector<Report>& Reports() const { return reports_; }

  // Called after each call.
  std::function<void()> afterCall = [] {};

 private:
  unsigned int NextMark() { return kFirstMark + static_cast<unsigned int>(reports_.size()); }
  void Reported(const char* table, unsigned int mark, bool critical);
  void Due();  // with the tick just told
  void Called();

  static constexpr unsigned int kFirstMark = 1'000'000;

  FakeClock clock_;
  std::unique_ptr<DataStoreNormal> store_;
  std::vector<Report> reports_;
  std::size_t calls_ = 0;
  unsigned int lastCriticalCommit_ = 0;
};
