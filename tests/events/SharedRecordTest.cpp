// The bytes of the shared record after each kind of reading.

#include "SharedRecordTest.h"

#include "support/Hex.h"

namespace {

// Hexadecimal digits as ToHex writes them.
std::string Hex(const char* digits) {
  return ToHex(FromHex(digits));
}

TEST_F(SharedRecordTest, HoldsEveryFieldOfAGpsReading) {
  GpsStatusItem item;
  std::uint32_t value = 1;
  std::apply(
      [&](auto... field) {
        ((item.*field = static_cast<std::decay_t<decltype(item.*field)>>(value++)), ...);
      },
      GpsStatusItem::Fields());
  item.latitudeHemisphere = 1;
  item.longitudeHemisphere = 2;
  Deliver(MetadataMgr::GpsStatusEventHandler, Encoded(item));
  EXPECT_EQ(Record(), Hex("01 00 ee ee 14 ee ee ee 4e ee ee ee 00 00 00 01 00 02 ee ee 00 00 00 03 "
                          "57 ee ee ee 00 00 00 05 00 06 ee ee 00 00 00 07 00 0b 00 0d 00 00 00 0e "
                          "00 00 00 0f 00 00 00 10 00 00 00 11 00 00 00 12 00 0a 00 0c 00 00 00 13 "
                          "00 00 00 09 ee ee ee ee ee ee ee ee ee ee ee ee"));
}

TEST_F(SharedRecordTest, HoldsARadarReadingThatIsNotValid) {
  RadarItem item;
  item.status = 0x0081;
  item.patrolSpeedKmh = 2;
  item.targetSpeedKmh = 3;
  item.fastestSpeedKmh = 4;
  item.lockedSpeedKmh = 5;
  Deliver(MetadataMgr::RadarEventHandler, Encoded(item));
  EXPECT_EQ(Record(), ToHex(FromHex("0100") + std::string(74, '\xee') +
                            FromHex("00 81 00 02 00 03 00 04 00 05 ee ee")));
}

TEST_F(SharedRecordTest, SpeedAndHemispheresAreTheReadings) {
  GpsStatusItem item;  // no fix
  item.speedDeciKmh = 19;
  item.latitudeHemisphere = 2;
  item.longitudeHemisphere = 1;
  Deliver(MetadataMgr::GpsStatusEventHandler, Encoded(item));
  EXPECT_EQ(record_[0x08], 'S');
  EXPECT_EQ(record_[0x18], 'E');
  EXPECT_EQ(record_[0x41], 19);
}

}  // namespace
