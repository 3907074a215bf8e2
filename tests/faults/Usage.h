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

// A store in use, with its own clock. The test chooses the time of each call.
class Usage {
 public:
  explicit Usage(const std::string& basePath, StoreOptions options = {}) {
    setenv("LOG_TARGET", "stderr", 1);
    options.clock = &clock_;
    store_ = std::make_unique<DataStoreNormal>(basePath, options);
  }

  bool Open() {
    const bool open = store_->Open();
    store_->ReportShutdownDataAtStartup();
    store_->TimerTick(clock_.tick);
    afterCall();
    return open;
  }
  // A turn of the main loop: time passes, then TimerTick is called.
  void Turn(unsigned int ms) {
    clock_.tick += ms;
    clock_.utcMs += ms;
    store_->TimerTick(clock_.tick);
    afterCall();
  }
  void Temperature() {
    store_->ReportTemp(e_TempSensors{0}, static_cast<short>(Reported("temperature")), true, clock_.tick);
    Count("temperature");
  }
  void Text(std::size_t size) {
    store_->ReportStringData(e_Tag_Filler, std::string(size, 'x').c_str());
    Count("string");
  }
  void Bookmark() {
    store_->ReportBookmark(clock_.tick);
    Count("bookmark");
  }
  void Covert() {
    store_->ReportStateData(e_Tag_CovertEntered, true, clock_.tick);
    Count("state");
  }
  void Close() {
    store_->ReportShutdownData();
    afterCall();
    store_->Close();
    afterCall();
  }

  // The number of records reported for a table.
  long Reported(const std::string& table) const { return Of(table, reported_); }

  // Runs after each call to the store.
  std::function<void()> afterCall = [] {};

 private:
  void Count(const char* table) {
    ++reported_[table];
    afterCall();
  }

  FakeClock clock_;
  std::unique_ptr<DataStoreNormal> store_;
  Counts reported_;
};
