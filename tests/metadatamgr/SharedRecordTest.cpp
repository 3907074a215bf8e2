// Reads the shared record from another process while MetadataMgr writes it.
#include <algorithm>
#include <cstdlib>

#include "Car.h"
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

  // Clears the fields, sends a reading, and returns the record.
  std::string RecordAfter(unsigned int type, const std::string& payload) {
    std::fill_n(record_ + 2, 86, static_cast<unsigned char>(0xEE));
    const std::uint32_t changes = Counter();
    car_.Say(type, payload);
    EXPECT_EQ(Counter(), changes + 2);  // odd during the write
    return ReadWhole(record_).value_or("torn");
  }

  std::uint32_t Counter() const { return GetU32(record_ + MetadataSharedMem::kChangeCounterOffset); }

  Car car_;
  MetadataSharedMem view_;
  unsigned char* record_ = nullptr;
};

TEST_F(SharedRecordTest, HoldsEveryFieldOfAGpsReading) {
  EXPECT_EQ(RecordAfter(kGps,
                        "0001 0002 00000003 00000001 0005 0006 00000007 00000008 00000009 000a 000b 000c 000d"
                        "0000000e 0000000f 00000010 00000011 00000012 00000013 14 00000015"),
            FromHex("0100 eeee 14eeeeee 4eeeeeee 00000001 0002 eeee 00000003 57eeeeee 00000005 0006 eeee"
                    "00000007 000b 000d 0000000e 0000000f 00000010 00000011 00000012 000a 000c 00000013"
                    "00000009 eeee eeee eeee eeee eeee eeee"));
}

TEST_F(SharedRecordTest, HoldsReadingsThatAreNotValid) {
  const std::string record =
      RecordAfter(kGps, Zeros(8) + "00000002" + Zeros(8) + "00000001 00000000 0013" + Zeros(35));
  EXPECT_EQ(record.substr(0x08, 1) + record.substr(0x18, 1) + record.substr(0x40, 2), "SE" + FromHex("0013"));
  EXPECT_EQ(RecordAfter(kRadar, "0081 0002 0003 0004 0005 00000000"),
            FromHex("0100") + std::string(74, '\xee') + FromHex("0081 0002 0003 0004 0005 eeee"));
}

}  // namespace
