#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "store/DataStoreNormal.h"
#include "store/StoreFixture.h"

// Records by table.
using Counts = std::map<std::string, long>;

inline long Of(const std::string& table, const Counts& counts) {
  const auto found = counts.find(table);
  return found == counts.end() ? 0 : found->second;
}

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

  long Reported(const std::string& table) const { return Of(table, reported_); }

  // Called after each call.
  std::function<void()> afterCall = [] {};

 private:
  void Count(const char* table);

  FakeClock clock_;
  std::unique_ptr<DataStoreNormal> store_;
  Counts reported_;
};
