#include "StoreFixture.h"

namespace {

TEST_F(StoreTest, TheCurrentTickIsTheLastRealOne) {
  DataStoreNormal store(dir_.Path("metadata"), options_);
  EXPECT_EQ(store.GetCurrentSystemTick(), 0xFFFFFFFFU);
  store.TimerTick(0xFFFFFFFF);
  EXPECT_EQ(store.GetCurrentSystemTick(), 0xFFFFFFFFU);
  store.TimerTick(0);
  EXPECT_EQ(store.GetCurrentSystemTick(), 0U);
  store.TimerTick(0xFFFFFFFE);
  store.TimerTick(0xFFFFFFFF);
  EXPECT_EQ(store.GetCurrentSystemTick(), 0xFFFFFFFEU);
}

struct TicksCase {
  const char* name;
  std::vector<unsigned int> ticks;
  const char* arrivals;  // of one record after each tick
};

class ArrivalTest : public StoreTest, public testing::WithParamInterface<TicksCase> {};

TEST_P(ArrivalTest, RecordsCarryTheExtendedTick) {
  DataStoreNormal store(dir_.Path("metadata"), options_);
  ASSERT_TRUE(store.Open());
  for (const unsigned int tick : GetParam().ticks) {
    store.TimerTick(tick);
    store.ReportStringData(e_Tag_Filler, "");
  }
  store.Close();
  EXPECT_EQ(Connection(dir_.Path("metadata.000001.db")).Rows("SELECT tick FROM string ORDER BY seq"),
            GetParam().arrivals);
}

INSTANTIATE_TEST_SUITE_P(
    Ticks, ArrivalTest,
    testing::Values(TicksCase{"Ordinary", {10'000, 10'500}, "10000\n10500\n"},
                    TicksCase{"NoTickIsIgnored", {10'000, 0xFFFFFFFF, 10'500}, "10000\n10000\n10500\n"},
                    TicksCase{"NoTickYetIsTheClocks", {0xFFFFFFFF}, "10000\n"},
                    TicksCase{"TheFirstTickDecides", {100, 200}, "100\n200\n"},
                    TicksCase{"TheFirstTickIsFarAhead", {0xFFFFFFF0}, "4294967280\n"},
                    TicksCase{"Wraps", {0xFFFFFFF0, 5, 6}, "4294967280\n4294967301\n4294967302\n"},
                    TicksCase{"WrapsTwice",
                              {0xFFFFFFFE, 0x70000000, 0xE0000000, 1},
                              "4294967294\n6174015488\n8053063680\n8589934593\n"},
                    TicksCase{
                        "StepsBackALittle", {10'000, 9'000, 9'999, 10'001}, "10000\n10000\n10000\n10001\n"},
                    TicksCase{"BeginsAnew", {10'000, 8'999, 9'100}, "10000\n4294976295\n4294976396\n"}),
    [](const auto& param) { return std::string(param.param.name); });

struct UtcCase {
  const char* name;
  unsigned int now;
  unsigned int senderTick;
  const char* utc;
};

class UtcTest : public StoreTest, public testing::WithParamInterface<UtcCase> {};

// The wall clock shows noon at the tick of arrival.
TEST_P(UtcTest, ComesFromTheSendersTickWhereThatIsNear) {
  clock_.tick = GetParam().now;
  Open();
  Store().ReportTemp(e_TempSensors{0}, 1, true, GetParam().senderTick);
  Close();
  EXPECT_EQ(Rows("SELECT utc,utc_from FROM timeline WHERE source='temperature 0'"),
            std::string(GetParam().utc) + "\n");
}

INSTANTIATE_TEST_SUITE_P(
    SenderTicks, UtcTest,
    testing::Values(UtcCase{"TheSame", 100'000, 100'000, "2024-05-01T12:00:00.000Z|sender"},
                    UtcCase{"Earlier", 100'000, 98'765, "2024-05-01T11:59:58.765Z|sender"},
                    UtcCase{"Later", 100'000, 100'007, "2024-05-01T12:00:00.007Z|sender"},
                    UtcCase{"AMinuteEarlier", 100'000, 40'000, "2024-05-01T11:59:00.000Z|sender"},
                    UtcCase{"MoreThanAMinuteEarlier", 100'000, 39'999, "2024-05-01T12:00:00.000Z|arrival"},
                    UtcCase{"AMinuteLater", 100'000, 160'000, "2024-05-01T12:01:00.000Z|sender"},
                    UtcCase{"MoreThanAMinuteLater", 100'000, 160'001, "2024-05-01T12:00:00.000Z|arrival"},
                    UtcCase{"ZeroIsNoTick", 1'000, 0, "2024-05-01T12:00:00.000Z|arrival"},
                    UtcCase{"BeforeTheWrap", 5, 0xFFFFFFFE, "2024-05-01T11:59:59.993Z|sender"},
                    UtcCase{"AfterTheWrap", 0xFFFFFFF0, 4, "2024-05-01T12:00:00.020Z|sender"},
                    UtcCase{"NoTick", 0xFFFFFFF0, 0xFFFFFFFF, "2024-05-01T12:00:00.000Z|arrival"}),
    [](const auto& param) { return std::string(param.param.name); });

TEST_F(StoreTest, AnchorsAreTakenAtOpenEachMinuteAndWhenTheClockWasSet) {
  Open();
  for (int i = 0; i < 130; ++i) After(1000);
  clock_.utcMs += 3'600'000;
  After(1000);
  clock_.utcMs -= 300;
  After(1000);
  clock_.utcMs += 200;  // as little as that is the clock being adjusted
  After(1000);
  Close();
  EXPECT_EQ(Rows("SELECT tick, utc_ms-1714564800000 FROM clock ORDER BY seq"),
            "10000|0\n70000|60000\n130000|120000\n141000|3731000\n142000|3731700\n");
}

TEST_F(StoreTest, AnAnchorsUtcIsThatOfItsTick) {
  Open();
  clock_.tick += 60'008;  // 8 ms after the tick that is told
  clock_.utcMs += 60'008;
  Store().TimerTick(clock_.tick - 8);
  Close();
  EXPECT_EQ(Rows("SELECT tick, utc_ms-1714564800000 FROM clock ORDER BY seq"), "10000|0\n70000|60000\n");
}

// Once, the machine does something else between the readings of the two clocks.
class InterruptedClock : public FakeClock {
 public:
  std::int64_t UtcMs() const override {
    const std::int64_t now = utcMs + late_;
    late_ = 500;
    return now;
  }
  unsigned int TickMs() const override { return tick + late_; }

 private:
  mutable unsigned int late_ = 0;
};

TEST_F(StoreTest, AnAnchorWhoseReadingWasInterruptedIsReadAgain) {
  const InterruptedClock clock;
  options_.clock = &clock;
  Open();
  Close();
  EXPECT_EQ(Rows("SELECT tick, utc_ms-1714564800000 FROM clock"), "10000|0\n");
}

TEST_F(StoreTest, UtcGoesOnWhenTheTicksWrapOrBeginAnew) {
  struct Leap {
    const char* base;
    unsigned int from;
    unsigned int to;
  };
  for (const Leap leap : {Leap{"wraps", 0xFFFFFFF0, 484}, Leap{"anew", 10'000, 42}}) {
    clock_ = FakeClock();
    clock_.tick = leap.from;
    Open(leap.base);
    clock_.utcMs += 500;
    clock_.tick = leap.to;
    Store().TimerTick(clock_.tick);
    Temperature(1);
    Store().ReportGpsState(true, true);
    After(500);
    EXPECT_EQ(Rows("SELECT utc,utc_from FROM timeline WHERE source<>'clock'"),
              "2024-05-01T12:00:00.500Z|sender\n2024-05-01T12:00:00.500Z|arrival\n")
        << leap.base;
  }
}

TEST_F(StoreTest, WithoutATickRecordsAreStillCommittedAndLocksWaitedOut) {
  Open();
  Temperature(1);
  Store().TimerTick(0xFFFFFFFF);
  EXPECT_EQ(Temperatures(), "1\n");
  {
    Connection other(File(1));
    other.Rows("BEGIN IMMEDIATE");
    Temperature(2);
    Store().TimerTick(0xFFFFFFFF);
  }
  Store().TimerTick(0xFFFFFFFF);
  EXPECT_EQ(Temperatures(), "1\n2\n");
}

TEST_F(StoreTest, AfterATimeWithoutTicksUtcIsRightAgain) {
  Open();
  clock_.tick += 20'000;
  clock_.utcMs += 20'000;
  Store().TimerTick(0xFFFFFFFF);
  Temperature(1);
  Store().ReportGpsState(true, true);
  After(1000);
  Store().ReportGpsState(false, true);
  Close();
  EXPECT_EQ(Rows("SELECT utc,utc_from,text FROM timeline WHERE source<>'clock'"),
            "2024-05-01T12:00:20.000Z|sender|1\n2024-05-01T12:00:00.000Z|arrival|fix\n"
            "2024-05-01T12:00:21.000Z|arrival|no fix\n");
}

TEST_F(StoreTest, AClockThatDidNotKnowTheDateDoesNotSpoilWhatWasRecordedBeforeItWasSet) {
  clock_.utcMs = 5'000;  // 1970
  Open();
  Temperature(1);
  After(90'000);
  Temperature(2);
  clock_.utcMs = kNoonUtcMs;
  After(1000);
  Temperature(3);
  Close();
  EXPECT_EQ(Rows("SELECT utc FROM timeline WHERE source='temperature 0'"),
            "2024-05-01T11:58:30.000Z\n2024-05-01T12:00:00.000Z\n2024-05-01T12:00:01.000Z\n");
}

TEST_F(StoreTest, UtcFollowsAWallClockThatStepsBack) {
  Open();
  Temperature(1);
  clock_.utcMs -= 86'400'000;
  After(1000);
  Temperature(2);
  After(1000);
  Temperature(3);
  Close();
  EXPECT_EQ(Rows("SELECT utc,text FROM timeline WHERE source='temperature 0'"),
            "2024-05-01T12:00:00.000Z|1\n2024-04-30T12:00:01.000Z|2\n2024-04-30T12:00:02.000Z|3\n");
}

TEST_F(StoreTest, ARestatedRecordHasTheTimeOfItsRestating) {
  Open();
  Temperature(1);
  After(30'000);
  Store().WriteFullState(true);
  EXPECT_EQ(Rows("SELECT utc,utc_from,tick,sender_tick FROM timeline WHERE event='restated'"),
            "2024-05-01T12:00:30.000Z|arrival|40000|10000\n");
}

}  // namespace
