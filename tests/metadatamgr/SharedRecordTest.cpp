// The shared record as another process reads it while MetadataMgr keeps it.
#include <algorithm>
#include <cstdlib>

#include "Car.h"
#include "items/GpsStatusItem.h"
#include "items/RadarItem.h"
#include "sharedmem/MetadataSharedMem.h"
#include "support/Hex.h"
#include "support/WholeRecord.h"
#include "system/BigEndian.h"

namespace {

class SharedRecordTest : public testing::Test {
 protected:
  SharedRecordTest() {
    setenv("METADATA_SHM", car_.environment["METADATA_SHM"].c_str(), 1);
    car_.UseServers();
    car_.Run();
    record_ = view_.MetadataItems(false);
  }
  ~SharedRecordTest() override { unsetenv("METADATA_SHM"); }

  void Send(unsigned int type, const Item& item) {
    std::string bytes(item.Size(), '\0');
    (void)item.Encode(reinterpret_cast<unsigned char*>(bytes.data()));
    car_.stateMgr.Send(type, ToHex(bytes));
  }

  // What the record holds after a reading, of which nothing stood there before.
  std::string RecordAfter(unsigned int type, const Item& item) {
    std::fill_n(record_ + 2, 86, static_cast<unsigned char>(0xEE));
    const std::uint32_t changes = Counter();
    Send(type, item);
    EXPECT_TRUE(car_.Answers());
    EXPECT_EQ(Counter(), changes + 2);  // odd in between
    return ToHex(ReadWhole(record_).value_or("torn"));
  }

  std::uint32_t Counter() const { return GetU32(record_ + MetadataSharedMem::kChangeCounterOffset); }

  Car car_;
  MetadataSharedMem view_;
  unsigned char* record_ = nullptr;
};

// Each field another number, from `first` on.
GpsStatusItem NumberedGps(std::uint32_t first) {
  GpsStatusItem item;
  std::apply(
      [&](auto... field) {
        ((item.*field = static_cast<std::decay_t<decltype(item.*field)>>(first++)), ...);
      },
      GpsStatusItem::Fields());
  return item;
}

// Hexadecimal digits as ToHex writes them.
std::string Hex(const std::string& digits) {
  return ToHex(FromHex(digits));
}

TEST_F(SharedRecordTest, HoldsEveryFieldOfAGpsReading) {
  GpsStatusItem item = NumberedGps(1);
  item.latitudeHemisphere = 1;
  EXPECT_EQ(RecordAfter(kGps, item),
            Hex("01 00 ee ee 14 ee ee ee 4e ee ee ee 00 00 00 01 00 02 ee ee 00 00 00 03 "
                "57 ee ee ee 00 00 00 05 00 06 ee ee 00 00 00 07 00 0b 00 0d 00 00 00 0e "
                "00 00 00 0f 00 00 00 10 00 00 00 11 00 00 00 12 00 0a 00 0c 00 00 00 13 "
                "00 00 00 09 ee ee ee ee ee ee ee ee ee ee ee ee"));
}

TEST_F(SharedRecordTest, HoldsReadingsThatAreNotValid) {
  GpsStatusItem gps;  // no fix
  gps.speedDeciKmh = 19;
  gps.latitudeHemisphere = 2;
  gps.longitudeHemisphere = 1;
  const std::string record = FromHex(RecordAfter(kGps, gps));
  EXPECT_EQ(record.substr(0x08, 1) + record.substr(0x18, 1) + record.substr(0x40, 2), "SE" + FromHex("0013"));

  RadarItem radar;
  radar.status = 0x0081;
  radar.patrolSpeedKmh = 2;
  radar.targetSpeedKmh = 3;
  radar.fastestSpeedKmh = 4;
  radar.lockedSpeedKmh = 5;
  EXPECT_EQ(RecordAfter(kRadar, radar), Hex("0100") + " " + ToHex(std::string(74, '\xee')) + " " +
                                            Hex("00 81 00 02 00 03 00 04 00 05 ee ee"));
}

// The change counter tells a copy of two readings from one of a single one.
TEST_F(SharedRecordTest, IsNeverATornCopyOfTwoReadings) {
  const GpsStatusItem readings[] = {NumberedGps(0x11), NumberedGps(0x51)};
  std::string wholes[2];
  for (int i = 0; i < 2; ++i) wholes[i] = FromHex(RecordAfter(kGps, readings[i]));
  int seen[2] = {};
  for (int i = 0; i < 2000; ++i) {
    Send(kGps, readings[i % 2]);
    for (int look = 0; look < 50; ++look) {
      const auto copy = ReadWhole(record_);
      if (!copy) continue;
      ASSERT_TRUE(*copy == wholes[0] || *copy == wholes[1]) << ToHex(*copy);
      ++seen[*copy == wholes[1] ? 1 : 0];
    }
  }
  EXPECT_GT(seen[0], 0);
  EXPECT_GT(seen[1], 0);
}

}  // namespace
