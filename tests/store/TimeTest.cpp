#include "StoreFixture.h"

namespace {

TEST_F(StoreTest, RecordsCarryTheExtendedTick) {
  const struct {
    std::string name;
    std::vector<unsigned int> ticks;
    const char* arrivals;  // arrival tick of one record after each tick
  } kCases[] = {
      {"no tick is ignored", {10'000, 0xFFFFFFFF, 10'500}, "10000\n10000\n10500\n"},
      {"no tick yet is the clock's", {0xFFFFFFFF}, "10000\n"},
      {"the first tick decides", {100, 200}, "100\n200\n"},
      {"wraps twice",
       {0xFFFFFFFE, 0x70000000, 0xE0000000, 1},
       "4294967294\n6174015488\n8053063680\n8589934593\n"},
      {"steps back a little", {10'000, 9'000, 9'999, 10'001}, "10000\n10000\n10000\n10001\n"},
      {"begins anew", {10'000, 8'999, 9'100}, "10000\n4294976295\n4294976396\n"},
  };
  for (const auto& c : kCases) {
    clock_ = FakeClock();
    DataStoreNormal store(dir_.Path(c.name), options_);
    ASSERT_TRUE(store.Open());
    for (const unsigned int tick : c.ticks) {
      clock_.tick = tick;
      store.TimerTick(tick);
      store.ReportStringData(e_Tag_Filler, "");
    }
    store.Close();
    EXPECT_EQ(Connection(dir_.Path(c.name + ".000001.db")).Rows("SELECT tick FROM string ORDER BY seq"),
              c.arrivals)
        << c.name;
  }
}

TEST_F(StoreTest, ARecordArrivesAtTheTickOfItsTurnsFirstReport) {
  Open();
  After(500);
  clock_.tick += 915;
  Store().ReportBookmark(clock_.tick);
  clock_.tick += 5;
  Temperature(1);
  EXPECT_EQ(Store().GetCurrentSystemTick(), 10'500U);
  After(80);
  clock_.tick += 30;
  Temperature(2);
  Close();
  EXPECT_EQ(Rows("SELECT tick FROM record WHERE source IN ('bookmark','temperature 0') ORDER BY seq"),
            "11415\n11415\n11530\n");
}

// The wall clock shows noon at the arrival tick.
TEST_F(StoreTest, UtcComesFromTheSendersTickWhereThatIsNear) {
  const struct {
    std::string name;
    unsigned int now;
    unsigned int senderTick;
    const char* utc;
  } kCases[] = {
      {"a minute earlier", 100'000, 40'000, "11:59:00.000Z|sender\n"},
      {"more than that", 100'000, 39'999, "12:00:00.000Z|arrival\n"},
      {"a minute later", 100'000, 160'000, "12:01:00.000Z|sender\n"},
      {"more than that later", 100'000, 160'001, "12:00:00.000Z|arrival\n"},
      {"zero is no tick", 1'000, 0, "12:00:00.000Z|arrival\n"},
      {"before the wrap", 5, 0xFFFFFFFE, "11:59:59.993Z|sender\n"},
      {"after the wrap", 0xFFFFFFF0, 4, "12:00:00.020Z|sender\n"},
      {"no tick", 0xFFFFFFF0, 0xFFFFFFFF, "12:00:00.000Z|arrival\n"},
  };
  for (const auto& c : kCases) {
    clock_.tick = c.now;
    Open(c.name);
    Store().ReportTemp(e_TempSensors{0}, 1, true, c.senderTick);
    Close();
    EXPECT_EQ(Rows("SELECT utc,utc_from FROM timeline WHERE source='temperature 0'"),
              std::string("2024-05-01T") + c.utc)
        << c.name;
  }
}

class ClockTest : public StoreTest {
 protected:
  // The anchors: tick, and UTC since noon.
  std::string Anchors() const { return Rows("SELECT tick, utc_ms-1714564800000 FROM clock ORDER BY seq"); }
  std::string Times() const {
    return Rows("SELECT utc,utc_from,text FROM timeline WHERE source<>'clock' ORDER BY seq");
  }
};

TEST_F(ClockTest, AnchorsAreTakenAtOpenEachMinuteAndWhenTheClockWasSet) {
  Open();
  for (int i = 0; i < 65; ++i) After(1000);
  clock_.utcMs += 3'600'000;
  After(1000);
  clock_.utcMs -= 300;
  After(1000);
  clock_.utcMs += 200;  // a change this small is a clock adjustment
  After(1000);
  After(59'000);
  clock_.tick += 60'008;  // 8 ms after the reported tick
  clock_.utcMs += 60'008;
  Store().TimerTick(clock_.tick - 8);
  Close();
  EXPECT_EQ(Anchors(),
            "10000|0\n70000|60000\n76000|3666000\n77000|3666700\n137000|3726900\n197000|3786900\n");
}

// Delays the store once between its readings of the two clocks: at the second reading of the tick, which is
// the first for an anchor.
class InterruptedClock : public FakeClock {
 public:
  unsigned int TickMs() const override { return tick + (++readings_ > 2 ? 500 : 0); }
  std::int64_t UtcMs() const override { return utcMs + (readings_ > 1 ? 500 : 0); }

 private:
  mutable int readings_ = 0;
};

TEST_F(ClockTest, AnAnchorWhoseReadingWasInterruptedIsReadAgain) {
  const InterruptedClock clock;
  options_.clock = &clock;
  Open();
  Close();
  EXPECT_EQ(Anchors(), "10000|0\n");
}

TEST_F(ClockTest, UtcGoesOnWhenTheTicksWrapOrBeginAnew) {
  for (const auto& [from, to] : {std::pair(0xFFFFFFF0U, 484U), std::pair(10'000U, 42U)}) {
    clock_ = FakeClock();
    clock_.tick = from;
    Open("from " + std::to_string(from));
    clock_.utcMs += 500;
    clock_.tick = to;
    Store().TimerTick(to);
    Temperature(1);
    Store().ReportGpsState(true, true);
    After(500);
    EXPECT_EQ(Times(), "2024-05-01T12:00:00.500Z|sender|1\n2024-05-01T12:00:00.500Z|arrival|fix\n") << from;
  }
}

TEST_F(ClockTest, WithoutATickRecordsAreStillCommittedAndLocksWaitedOutAndUtcIsRightAgainAfterwards) {
  Open();
  clock_.tick += 20'000;
  clock_.utcMs += 20'000;
  Store().TimerTick(0xFFFFFFFF);
  Temperature(1);
  Store().TimerTick(0xFFFFFFFF);
  EXPECT_EQ(Temperatures(), "1\n");
  {
    Connection other(File(1));
    other.Rows("BEGIN IMMEDIATE");
    Store().ReportGpsState(true, true);
    Store().TimerTick(0xFFFFFFFF);
  }
  Store().TimerTick(0xFFFFFFFF);
  EXPECT_EQ(Rows("SELECT count(*) FROM gps_state"), "1\n");
  After(1000);
  Store().ReportGpsState(false, true);
  After(500);
  EXPECT_EQ(Times(),
            "2024-05-01T12:00:20.000Z|sender|1\n2024-05-01T12:00:00.000Z|arrival|fix\n"
            "2024-05-01T12:00:21.000Z|arrival|no fix\n");
}

TEST_F(ClockTest, AClockThatDidNotKnowTheDateDoesNotSpoilWhatWasRecordedBeforeItWasSet) {
  clock_.utcMs = 5'000;  // 1970
  Open();
  Temperature(1);
  After(90'000);
  Temperature(2);
  clock_.utcMs = kNoonUtcMs;
  After(1000);
  Temperature(3);
  Close();
  EXPECT_EQ(Times(),
            "2024-05-01T11:58:30.000Z|sender|1\n2024-05-01T12:00:00.000Z|sender|2\n"
            "2024-05-01T12:00:01.000Z|sender|3\n");
}

TEST_F(ClockTest, UtcIsRightBefore1970) {
  clock_.utcMs = -1'500;
  Open();
  Temperature(1);
  After(1'250);
  Temperature(2);
  Close();
  EXPECT_EQ(Times(), "1969-12-31T23:59:58.500Z|sender|1\n1969-12-31T23:59:59.750Z|sender|2\n");
}

TEST_F(ClockTest, UtcFollowsAWallClockThatStepsBackAndARestatedRecordHasTheTimeOfItsRestating) {
  Open();
  Temperature(1);
  clock_.utcMs -= 86'400'000;
  After(1000);
  Temperature(2);
  After(1000);
  Store().WriteFullState(true);
  EXPECT_EQ(Times(),
            "2024-05-01T12:00:00.000Z|sender|1\n2024-04-30T12:00:01.000Z|sender|2\n"
            "2024-04-30T12:00:02.000Z|arrival|2\n");
}

}  // namespace
