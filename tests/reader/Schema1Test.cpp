#include "ReaderFixture.h"
#include "support/Schema1.h"

namespace {

using testing::HasSubstr;

// An earlier version wrote this recording.
TEST_F(ReaderTest, ReadsARecordingOfSchema1) {
  const std::string old = dir_.Write("old.000001.db", "");
  ASSERT_EQ(WriteSchema1(old), "");
  const Ran check = Metadata({"check", old});
  EXPECT_EQ(check.status, 0) << check.out << check.said;
  const Ran dump = Metadata({"dump", old});
  EXPECT_EQ(std::count(dump.out.begin(), dump.out.end(), '\n'), 18);
  EXPECT_THAT(dump.out, HasSubstr("brakes"));
  EXPECT_THAT(dump.out, HasSubstr("clean end"));
}

}  // namespace
