// Recordings of every kind of record, one ended in order and one cut off: what they hold is committed as
// text, and the first hundred bytes as bytes. With the environment variable MM_EXCHANGE they are written to
// that directory and read from it, maybe by a program of the other machine.

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <utility>

#include "items/ConfigurationItems.h"
#include "items/GpsStatusItem.h"
#include "items/VideoMgrStreamQualityItem.h"
#include "store/DataStoreNormal.h"
#include "store/StoreOptions.h"
#include "support/Hex.h"
#include "support/TempDir.h"
#include "wire/WireDocument.h"

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kSqliteHeader = 100;

class SteppedClock : public StoreClock {
 public:
  unsigned int TickMs() const override { return tick; }
  std::int64_t UtcMs() const override { return utcMs; }

  unsigned int tick = 0xFFFFFFF0U;         // about to wrap
  std::int64_t utcMs = 2'208'988'800'000;  // 2040, past 32 bits
};

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void ReportEvents(DataStoreNormal& store, unsigned int tick) {
  store.ReportStateData(e_Tag_BrakesOn, true, tick);
  store.ReportStringData(e_Tag_Filler, "b\xC3\xA4r");
  store.ReportBookmark(tick);
  store.ReportSpeed(1, 65535, true, tick, e_Tag_None);
  store.ReportMicPresent(e_MicrophonePosition{2}, true, true, tick);
  store.ReportMicState(e_MicrophonePosition{2}, true, true, tick);
  store.ReportTemp(e_TempSensors{3}, -32768, true, tick);
  store.ReportCameraState(e_CameraPort{1}, e_CameraState{2}, true, tick);
  store.ReportVideoStreamState(e_VideoStream{3}, e_StreamState{1}, true, tick);
  store.ReportLvsState(e_VideoStream{4}, 2, true, true, htonl(0xC0A80114), 0xFFFE, true, tick);
  VideoMgrStreamQualityItem quality;
  quality.tick = tick;
  quality.streams[0] = {1920, 1080, 30, 60000};
  store.ReportStreamQualityItem(quality, true);
}

void ReportPosition(DataStoreNormal& store, unsigned int tick) {
  GpsStatusItem position;
  position.latitudeDegrees = 33;
  position.latitudeMinuteFraction = 9999;
  position.longitudeDegrees = 179;
  position.speedDeciKmh = 1234;
  position.altitudeDeciMetres = -4;
  store.ReportGpsState(true, true);
  store.ReportGps(position, tick, true);
  store.ReportRadarState(0, true, true);
  store.ReportRadar(0, 1, 256, 65535, e_RADAR_DIRECTION_Unknown, true, tick, e_Tag_None);
}

void ReportConfigured(DataStoreNormal& store) {
  unsigned char mac[6] = {0x02, 0, 0x7F, 0x80, 0xFE, 0xFF};
  store.ReportMac(mac, false);
  store.ReportSystemSerialNum("SN 17");
  VehicleInfo vehicle;
  vehicle.unitId = "unit-12";
  vehicle.licensePlate = std::string(255, 'x');
  store.ReportVehicleInfo(vehicle, false);
  VideoRecordingSettings settings;
  settings.preEventSeconds = 0x1234;
  settings.widthPixels = 1920;
  store.ReportVideoRecordingSettings(settings, false);
}

class Recording : public testing::Test {
 protected:
  Recording() : kept_(std::getenv("MM_EXCHANGE")) {
    setenv("LOG_TARGET", "stderr", 1);
    options_.clock = &clock_;
  }

  std::string Path(const std::string& name) const { return kept_ ? kept_ + ("/" + name) : own_.Path(name); }

  std::unique_ptr<DataStoreNormal> Open(const std::string& base) {
    auto store = std::make_unique<DataStoreNormal>(Path(base), options_);
    EXPECT_TRUE(store->Open());
    store->TimerTick(clock_.tick);
    return store;
  }

  // "clean" ended in order; "cut" as the power left it, its last records in the log.
  void Write() {
    auto store = Open("clean");
    ReportConfigured(*store);
    for (int i = 0; i < 2; ++i) {
      ReportEvents(*store, clock_.tick);
      ReportPosition(*store, clock_.tick);
      clock_.tick += 700;
      clock_.utcMs += 700;
      store->TimerTick(clock_.tick);
    }
    for (const char* suffix : {"", "-wal"}) {
      fs::copy_file(Path("clean.000001.db") + suffix, Path("cut.000001.db") + suffix);
    }
    store->ReportShutdownData();
    store->Close();
  }

  // All that `sql` gives, a line for each row.
  std::string Rows(const std::string& file, const std::string& sql) const {
    sqlite3* database = nullptr;
    std::string rows;
    EXPECT_EQ(sqlite3_open_v2(Path(file).c_str(), &database, SQLITE_OPEN_READWRITE, nullptr), SQLITE_OK);
    const auto append = [](void* context, int count, char** values, char**) {
      auto& text = *static_cast<std::string*>(context);
      for (int i = 0; i < count; ++i) text.append(i == 0 ? "" : "|").append(values[i] ? values[i] : "NULL");
      text += '\n';
      return 0;
    };
    EXPECT_EQ(sqlite3_exec(database, sql.c_str(), append, &rows, nullptr), SQLITE_OK);
    sqlite3_close(database);
    return rows;
  }
  std::string Timeline(const std::string& file) const {
    return Rows(file, "SELECT * FROM timeline ORDER BY seq");
  }

  const char* const kept_;
  const TempDir own_;
  SteppedClock clock_;
  StoreOptions options_;
};

TEST_F(Recording, IsWrittenAsItAlwaysWas) {
  Write();
  const std::string golden = ReadFile(GOLDEN "/recording.txt");
  ASSERT_NE(golden, "");
  EXPECT_EQ(Timeline("clean.000001.db"), golden);
  const std::string header = ReadFile(Path("clean.000001.db")).substr(0, kSqliteHeader);
  EXPECT_TRUE(WireDocument(GOLDEN "/bytes.md").Packet("recording", "header").Matches(header))
      << ToHex(header);
}

// The next run looks at what was left, and folds in the log: the checksums there depend on the byte order.
TEST_F(Recording, IsReadAsItWasWritten) {
  if (!kept_) Write();
  const std::string golden = ReadFile(GOLDEN "/recording.txt");
  ASSERT_NE(golden, "");
  const std::string withoutEnd = golden.substr(0, golden.rfind('\n', golden.size() - 2) + 1);
  struct Case {
    std::string base;
    std::string ended;
    std::string rows;
  };
  for (const Case& left : {Case{"clean", "clean", golden}, Case{"cut", "cut off", withoutEnd}}) {
    SCOPED_TRACE(left.base);
    auto store = Open(left.base);
    store->ReportShutdownDataAtStartup();
    store->Close();
    const std::string first = left.base + ".000001.db";
    EXPECT_EQ(Rows(left.base + ".000002.db", "SELECT ended, file FROM previous_run"),
              left.ended + "|" + first + "\n");
    EXPECT_EQ(Rows(first, "PRAGMA integrity_check"), "ok\n");
    EXPECT_FALSE(fs::exists(Path(first + "-wal")));
    EXPECT_EQ(Timeline(first), left.rows);
  }
}

}  // namespace
