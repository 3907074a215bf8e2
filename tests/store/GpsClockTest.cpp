#include "Items.h"
#include "StoreFixture.h"

namespace {

// GPS has the true time: noon at tick 10000. The wall clock is an hour behind.
class GpsClockTest : public StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    clock_.utcMs -= 3'600'000;
  }

  static GpsStatusItem Reading(unsigned int tick) { return GpsAt(43'190'000 + tick, tick); }
  void Gps(const GpsStatusItem& reading) { Store().ReportGps(reading, reading.tick, true); }
  void Gps() { Gps(Reading(clock_.tick)); }

  // The GPS anchors: seconds since tick 10000, by tick and by UTC.
  std::string Anchors() const {
    return Rows(
        "SELECT (tick-10000)/1000.0, (utc_ms-1714564800000)/1000.0 FROM clock "
        "WHERE clock_source='gps' ORDER BY seq");
  }
  std::string Times(int file = 1) const {
    return Rows("SELECT utc FROM timeline WHERE source='temperature 0' AND event='event'", file);
  }
};

TEST_F(GpsClockTest, AnchorsAreTakenAtTheFirstReadingEachMinuteAndWhenTheTimeStepsByMoreThanASecond) {
  Open();
  for (int i = 0; i < 65; ++i) {
    After(1000);
    Gps();
  }
  for (const unsigned int step : {1000U, 2001U, 2000U, 0U, 0U}) {
    GpsStatusItem reading = Reading(clock_.tick);
    reading.utcTimeOfDayMs += step;
    Gps(reading);
    After(1000);
  }
  Close();
  EXPECT_EQ(Anchors(), "1.0|1.0\n61.0|61.0\n66.0|68.001\n68.0|68.0\n");
}

TEST_F(GpsClockTest, OneAnchorHoldsForTheWholeFileAndTheNextHoweverTheWallClockIsSet) {
  Open();
  Temperature(1);
  After(30'000);
  Gps(Reading(clock_.tick - 400));  // arrives a little late
  clock_.utcMs += 7'200'000;
  After(1000);
  clock_.utcMs -= 86'400'000;
  After(3'599'000);
  Temperature(2);
  After(500);
  EXPECT_EQ(Times(), "2024-05-01T12:00:00.000Z\n2024-05-01T13:00:30.000Z\n");
  EXPECT_EQ(Rows("SELECT text FROM timeline WHERE source='clock'"),
            "set by system\nset by gps, the wall clock is off by -3600.0 s\n"
            "set by gps, the wall clock is off by +3600.0 s\n"
            "set by gps, the wall clock is off by -82800.0 s\n")
      << "it stands beside it";
  std::filesystem::remove(File(1));
  Temperature(3);
  Close();
  EXPECT_EQ(Times(2), "2024-05-01T13:00:30.500Z\n");
}

TEST_F(GpsClockTest, ItOutlastsTicksThatWrapOrBeginAnew) {
  clock_.tick = 0xFFFFFFF0;
  Open();
  GpsStatusItem reading = Reading(10'000);
  reading.tick = 84;  // 100 ms later
  Gps(reading);
  Temperature(1);
  clock_.tick = 100'000'000;
  Store().TimerTick(clock_.tick);
  clock_.tick = 100;
  Store().TimerTick(clock_.tick);
  After(5000);
  Temperature(2);
  Close();
  EXPECT_EQ(Times(), "2024-05-01T11:59:59.900Z\n2024-05-02T15:46:44.916Z\n");
}

TEST_F(GpsClockTest, AReadingThatTellsNoTimeMakesNoAnchorAndIsRecordedAllTheSame) {
  using Change = void (*)(GpsStatusItem&);
  const Change kChanges[] = {
      [](auto& r) { r.quality = 0; },  // no fix
      [](auto& r) { r.quality = 7; },  // manual input
      [](auto& r) { r.quality = 8; },  // simulated
      [](auto& r) { r.valid = 0; },          [](auto& r) { r.utcDate = 20231231; },
      [](auto& r) { r.utcDate = 21000101; }, [](auto& r) { r.utcDate = 20250001; },
      [](auto& r) { r.utcDate = 20241301; }, [](auto& r) { r.utcDate = 20240500; },
      [](auto& r) { r.utcDate = 20250229; }, [](auto& r) { r.utcTimeOfDayMs = 86'400'000; },
      [](auto& r) { r.tick = 0; },           [](auto& r) { r.tick = 0xFFFFFFFF; },
      [](auto& r) { r.tick -= 60'001; },     [](auto& r) { r.tick += 60'001; },
  };
  Open();
  int count = 0;
  for (const Change change : kChanges) {
    GpsStatusItem reading = Reading(clock_.tick);
    change(reading);
    Gps(reading);
    After(500);
    EXPECT_EQ(Anchors(), "") << count;
    EXPECT_EQ(Rows("SELECT count(*) FROM gps"), std::to_string(++count) + "\n");
  }
  GpsStatusItem leapDay = GpsAt(86'399'999, clock_.tick);
  leapDay.utcDate = 20280229;
  Gps(leapDay);
  Temperature(1);
  Close();
  EXPECT_EQ(Times(), "2028-02-29T23:59:59.999Z\n") << "one that does";
}

}  // namespace
