// Reading the log of a receiver: accepted and rejected sentences.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

#include "NmeaLog.h"
#include "Tracks.h"

namespace bench {

namespace {

using testing::ElementsAre;

std::vector<std::string> RowsOf(const NmeaLog& log) {
  std::vector<std::string> rows;
  for (const NmeaReading& reading : log.readings) {
    rows.push_back(std::to_string(reading.atMs) + ": " + RowOf(reading.item));
  }
  return rows;
}

std::string Sentence(const std::string& body) {
  int sum = 0;
  for (const char c : body) sum ^= c;
  char tail[8];
  (void)std::snprintf(tail, sizeof tail, "*%02X\r\n", static_cast<unsigned>(sum));
  return "$" + body + tail;
}

TEST(Nmea, IsReadAsTheReceiverGaveIt) {
  const NmeaLog log = ParseNmea(TextOfFile(OwnTrack("harbour.nmea")));
  EXPECT_THAT(
      RowsOf(log),
      ElementsAre("0: -20399999 -35100000 -33 8 4 0 4 3 12 3 47 20261231 86398000 1",
                  "1500: -20400000 -36000000 20 235 127 0 5 3 11 3 47 20261231 86399500 1",
                  "3000: -20400001 -36000001 134217727 93 50 900 1 3 9 3 47 20270101 1000 1", "4000: no fix",
                  "5000: no fix", "6000: -20400003 -36000002 20 184 99 2700 1 3 12 3 47 20270101 60000 1"));
  EXPECT_EQ(log.Summary(),
            "6 readings, 4 with a fix, in 6 s; sentences: 17 used, 1 of other types, 2 malformed, 1 with a "
            "wrong checksum, 1 cut short, 2 lines of garbage");
  // Without a fix the position stays, and the satellites in view are counted.
  EXPECT_EQ(PlaceOf(log.readings[4].item), "-20400001 -36000001");
  EXPECT_EQ(log.readings[4].item.satellitesInView, 3U);
}

const std::string kPlace = "4807.0380,N,01131.0000,E";
const struct {
  const char* name;
  std::string text;
  std::string row;  // the last reading
} kCases[] = {
    {"RmcAlone", Sentence("GPRMC,120000,A," + kPlace + ",022.4,084.4,230326,003.1,W"),
     "28870380 6910000 134217727 415 224 844 1 2 0 0 -32 20260323 43200000 1"},
    {"GllAlone", Sentence("GPGLL," + kPlace + ",120000,A,D"),
     "28870380 6910000 134217727 0 0 0 2 2 0 0 -32 0 43200000 1"},
    {"QualityOfTheMode", Sentence("GNRMC,120000,A," + kPlace + ",0,,230326,,,E"),
     "28870380 6910000 134217727 0 0 0 6 2 0 0 -32 20260323 43200000 1"},
    {"FlatFix",
     Sentence("GPGGA,120000," + kPlace + ",1,03,2.0,5.0,M,,M,,") +
         Sentence("GPGSA,A,2,04,05,09,,,,,,,,,,2.2,2.0,1.0"),
     "28870380 6910000 50 0 0 0 1 2 3 0 -32 0 43200000 1"},
    {"SpeedBeyondTheField", Sentence("GPRMC,120000,A," + kPlace + ",99999.9,0,230326,,"),
     "28870380 6910000 134217727 65535 65535 0 1 2 0 0 -32 20260323 43200000 1"},
    {"NoFixOfAnyKind", Sentence("GPGGA,120000," + kPlace + ",0,03,2.0,5.0,M,,M,,"), "no fix"},
    {"ManualInput", Sentence("GPGGA,120000," + kPlace + ",7,00,,5.0,M,,M,,"), "no fix"},
    {"ModeSaysNo", Sentence("GPRMC,120000,A," + kPlace + ",0,0,230326,,,N"), "no fix"},
    {"PlaceholderWithoutFix", Sentence("GPGGA,120000,8960.0000,N,00000.0000,E,0,00,99.0,999999999,M,,M,,"),
     "no fix"},
    {"PlaceholderInRmc", Sentence("GPRMC,120000,V,8960.0000,N,00000.0000,E,x,x,230326,,"), "no fix"},
    {"PlaceholderInGll", Sentence("GPGLL,8960.0000,N,00000.0000,E,120000,V"), "no fix"},
    {"PlaceholderWithFix", Sentence("GPGLL,8960.0000,N,00000.0000,E,120000,A"), "nothing"},
    {"FixWithoutPlace", Sentence("GPGGA,120000,,,,,1,08,1.0,5.0,M,,M,,"), "no fix"},
    {"NorthAndEastOnly", Sentence("GPGLL,4807.038,X,01131.000,E,120000,A"), "nothing"},
    {"BeyondThePole", Sentence("GPGLL,9000.00005,N,01131.000,E,120000,A"), "nothing"},
    {"NoSuchDate", Sentence("GPRMC,120000,A," + kPlace + ",0,0,310226,,"), "nothing"},
    {"NoSuchQuality", Sentence("GPGGA,120000," + kPlace + ",9,08,1.0,5.0,M,,M,,"), "nothing"},
    {"AltitudeOfNoVehicle", Sentence("GPGGA,120000," + kPlace + ",1,08,1.0,999999999,M,,M,,"), "nothing"},
    {"OnlySatellites", Sentence("GPGSV,1,1,01,07,60,100,41"), "nothing"},
    {"NoChecksum", "$GPGLL," + kPlace + ",120000,A\n", "nothing"},
    {"LongerThanAnySentence", Sentence("GPGLL," + kPlace + ",120000,A," + std::string(300, 'A')), "nothing"},
    {"NoTalker", Sentence("GLL," + kPlace + ",120000,A"),
     "28870380 6910000 134217727 0 0 0 1 2 0 0 -32 0 43200000 1"},
    {"Nothing", "", "nothing"},
};

TEST(Nmea, TellsWhatASentenceSaysAndNoMore) {
  for (const auto& one : kCases) {
    const NmeaLog log = ParseNmea(one.text);
    EXPECT_EQ(log.readings.empty() ? "nothing" : RowOf(log.readings.back().item), one.row) << one.name;
  }
}

// The speed of each reading, in tenths of a km/h.
std::vector<int> SpeedsOf(const std::string& text) {
  std::vector<int> speeds;
  for (const NmeaReading& reading : ParseNmea(text).readings) speeds.push_back(reading.item.speedDeciKmh);
  return speeds;
}

TEST(Nmea, SpeedToldLessOftenThanThePlaceIsRepeatedWhileTheFixLasts) {
  const auto gga = [](int second, int quality) {
    return Sentence("GPGGA,1200" + std::to_string(second) + "," + kPlace + "," + std::to_string(quality) +
                    ",08,1.0,5.0,M,,M,,");
  };
  const std::string vtg = Sentence("GPVTG,90.0,T,,M,27.0,N,50.0,K");
  EXPECT_THAT(SpeedsOf(gga(10, 1) + vtg + gga(11, 1) + gga(12, 1) + gga(13, 0) + gga(14, 1)),
              ElementsAre(500, 500, 500, 500, 0));
  std::string silent = gga(10, 1) + vtg;
  for (int second = 11; second <= 31; ++second) silent += gga(second, 1);
  const std::vector<int> speeds = SpeedsOf(silent);
  ASSERT_EQ(speeds.size(), 22U);
  EXPECT_EQ(speeds[20], 500);
  EXPECT_EQ(speeds[21], 0);
}

// Skips when a log is missing. The logs are in MM_NMEA_LOGS, else beside the project.
TEST(Nmea, OfRealReceiversIsUnderstood) {
  constexpr struct {
    const char* name;
    std::size_t readings;
    std::size_t fixes;
    std::size_t skipped;  // skipped sentences and lines
  } kLogs[] = {{"bu353s4", 25, 25, 0}, {"bundg_zeus_9", 149, 149, 0}, {"haicom-305N", 74, 68, 0},
               {"iTrek", 37, 35, 1},   {"motorola-t805", 25, 16, 0},  {"nmea-rtk", 122, 122, 0},
               {"rx210", 62, 40, 0},   {"sirfstarv-nmea", 59, 59, 0}, {"telit-he910", 224, 187, 0}};
  const char* variable = std::getenv("MM_NMEA_LOGS");
  const std::string directory = variable != nullptr ? variable : REAL_TRACKS;
  for (const auto& real : kLogs) {
    NmeaLog log;
    if (!ReadNmea(directory + "/" + real.name + ".log", log)) GTEST_SKIP() << "there is no " << real.name;
    EXPECT_EQ(log.readings.size(), real.readings) << real.name;
    EXPECT_EQ(log.Fixes(), real.fixes) << real.name;
    const NmeaCounts& counts = log.counts;
    EXPECT_EQ(counts.malformed + counts.badChecksum + counts.cutShort + counts.garbage, real.skipped)
        << real.name;
  }
}

}  // namespace

}  // namespace bench
