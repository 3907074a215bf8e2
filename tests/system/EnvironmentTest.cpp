#include <gtest/gtest.h>

#include <cstdlib>

#include "system/BigEndian.h"
#include "system/KvGetenv.h"

namespace {

TEST(KvGetenv, TellsMissingFromEmpty) {
  unsetenv("MM_TEST_VARIABLE");
  EXPECT_EQ(KvGetenv("MM_TEST_VARIABLE"), nullptr);
  setenv("MM_TEST_VARIABLE", "", 1);
  EXPECT_STREQ(KvGetenv("MM_TEST_VARIABLE"), "");
  setenv("MM_TEST_VARIABLE", "value", 1);
  EXPECT_STREQ(KvGetenv("MM_TEST_VARIABLE"), "value");
}

TEST(BigEndian, FieldsOfAllBitsAtAnyAlignment) {
  unsigned char bytes[8] = {};
  PutU16(bytes + 1, 0x81FE);
  PutU32(bytes + 3, 0x80C3E1FF);
  const unsigned char expected[8] = {0, 0x81, 0xFE, 0x80, 0xC3, 0xE1, 0xFF, 0};
  for (int i = 0; i < 8; ++i) EXPECT_EQ(bytes[i], expected[i]) << i;
  EXPECT_EQ(GetU16(bytes + 1), 0x81FE);
  EXPECT_EQ(GetU32(bytes + 3), 0x80C3E1FFU);
}

}  // namespace
