// Recordings with every kind of record, one ended in order and one cut off. Golden files hold their content
// as text, and their first hundred bytes. With the environment variable MM_EXCHANGE the recordings are
// written to and read from that directory, so that a program of the other machine can read them.

#include <arpa/inet.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "items/ConfigurationItems.h"
#include "items/GpsStatusItem.h"
#include "items/VideoMgrStreamQualityItem.h"
#include "store/StoreFixture.h"
#include "support/Hex.h"
#include "wire/WireDocument.h"

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kSqliteHeader = 100;

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
    clock_.tick = 0xFFFFFFF0U;         // shortly before the wrap
    clock_.utcMs = 2'208'988'800'000;  // 2040, past 32 bits
    options_.clock = &clock_;
    options_.runId.emplace();  // zeros, so that the files of both machines can be compared
  }

  std::string Path(const std::string& name) const { return kept_ ? kept_ + ("/" + name) : own_.Path(name); }

  std::unique_ptr<DataStoreNormal> Open(const std::string& base) {
    auto store = std::make_unique<DataStoreNormal>(Path(base), options_);
    EXPECT_TRUE(store->Open());
    store->TimerTick(clock_.tick);
    return store;
  }

  // "clean" ended in order; "cut" lost power, with its last records in the WAL.
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

  std::string Rows(const std::string& file, const std::string& sql) const {
    return Connection(Path(file)).Rows(sql);
  }
  std::string Timeline(const std::string& file) const {
    return Rows(file, "SELECT * FROM timeline ORDER BY seq");
  }

  const char* const kept_;
  const TempDir own_;
  FakeClock clock_;
  StoreOptions options_;
};

TEST_F(Recording, IsWrittenAsItAlwaysWas) {
  Write();
  const std::string golden = TextOfFile(GOLDEN "/recording.txt");
  ASSERT_NE(golden, "");
  EXPECT_EQ(Timeline("clean.000001.db"), golden);
  const std::string header = TextOfFile(Path("clean.000001.db")).substr(0, kSqliteHeader);
  EXPECT_TRUE(WireDocument(GOLDEN "/bytes.md").Matches("recording", "header", header)) << ToHex(header);
}

// The next run checks the files and checkpoints the WAL, whose checksums depend on the byte order.
TEST_F(Recording, IsReadAsItWasWritten) {
  if (!kept_) Write();
  const std::string golden = TextOfFile(GOLDEN "/recording.txt");
  ASSERT_NE(golden, "");
  struct Case {
    std::string base;
    std::string ended;
    std::string rows;
  };
  const std::string withoutEnd = golden.substr(0, golden.rfind('\n', golden.size() - 2) + 1);
  for (const auto& [base, ended, rows] :
       {Case{"clean", "clean", golden}, Case{"cut", "cut off", withoutEnd}}) {
    SCOPED_TRACE(base);
    auto store = Open(base);
    store->ReportShutdownDataAtStartup();
    store->Close();
    const std::string first = base + ".000001.db";
    EXPECT_EQ(Rows(base + ".000002.db", "SELECT file||' '||ended FROM previous_run"),
              std::string(first).append(" ").append(ended).append("\n"));
    EXPECT_EQ(Rows(first, "PRAGMA integrity_check"), "ok\n");
    EXPECT_FALSE(fs::exists(Path(first + "-wal")));
    EXPECT_EQ(Timeline(first), rows);
  }
}

}  // namespace
