#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>

#include "store/DataStoreNormal.h"
#include "store/StoreOptions.h"
#include "support/Connection.h"
#include "support/Sealed.h"
#include "support/TempDir.h"

// 2024-05-01T12:00:00.000Z
constexpr std::int64_t kNoonUtcMs = 1714564800000;

class FakeClock : public StoreClock {
 public:
  unsigned int TickMs() const override { return tick; }
  std::int64_t UtcMs() const override { return utcMs; }

  unsigned int tick = 10'000;
  std::int64_t utcMs = kNoonUtcMs;
};

// A store with a clock that only the test moves. `After` is a turn of the main loop.
class StoreTest : public testing::Test {
 protected:
  void SetUp() override {
    setenv("LOG_TARGET", "stderr", 1);
    options_.clock = &clock_;
    if (!alters_) options_.keyFile = sealed_.KeyFile();
  }
  void TearDown() override {
    Close();
    if (!alters_) {
      EXPECT_EQ(sealed_.Altered(dir_.Path("")), "");
    }
  }

  void Open(const std::string& base = "metadata") {
    base_ = base;
    store_ = std::make_unique<DataStoreNormal>(dir_.Path(base), options_);
    ASSERT_TRUE(store_->Open());
    store_->TimerTick(clock_.tick);
  }

  void After(unsigned int ms) {
    clock_.tick += ms;
    clock_.utcMs += ms;
    store_->TimerTick(clock_.tick);
  }
  void Close() { store_.reset(); }

  DataStoreNormal& Store() { return *store_; }
  void Brakes(bool on) { Store().ReportStateData(on ? e_Tag_BrakesOn : e_Tag_BrakesOff, true, clock_.tick); }
  void Temperature(int value) {
    Store().ReportTemp(e_TempSensors{0}, static_cast<short>(value), true, clock_.tick);
  }

  std::string File(int number) const {
    std::string digits = std::to_string(number);
    return dir_.Path(base_ + "." + std::string(6 - digits.size(), '0') + digits + ".db");
  }
  bool Exists(int number) const { return std::filesystem::exists(File(number)); }
  std::string Rows(const std::string& sql, int number = 1) const {
    return Connection(File(number)).Rows(sql);
  }
  // The temperatures that a reader sees, without restated records, oldest first.
  std::string Temperatures(int number = 1) const {
    return Rows("SELECT temperature FROM temperature WHERE event=1 ORDER BY seq", number);
  }

  // Copies the files to another base path, as a power cut would leave them.
  void CopyFilesTo(const std::string& base) const {
    std::filesystem::create_directories(std::filesystem::path(dir_.Path(base)).parent_path());
    const std::string from = base_ + ".";
    for (const auto& entry : std::filesystem::directory_iterator(dir_.Path(""))) {
      const std::string name = entry.path().filename().string();
      if (!name.starts_with(from) || name.ends_with("-shm")) continue;
      std::filesystem::copy_file(entry.path(), dir_.Path(base + "." + name.substr(from.size())));
    }
  }

  TempDir dir_;
  Sealed sealed_;
  FakeClock clock_;
  StoreOptions options_;
  bool alters_ = false;  // the test alters recordings itself

 private:
  std::string base_;
  std::unique_ptr<DataStoreNormal> store_;
};
