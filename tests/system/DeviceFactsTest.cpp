#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "DeviceFiles.h"
#include "support/Hex.h"
#include "support/TempDir.h"
#include "system/KvGetenv.h"
#include "system/MfgItem.h"
#include "system/SystemInformation.h"

namespace {

using namespace std::string_literals;

const std::string kNone = "00 00 00 00 00 00";

std::string MacUnder(const std::string& directory) {
  unsigned char mac[6] = {9, 9, 9, 9, 9, 9};
  MacAddressUnder(directory, mac);
  return ToHex({reinterpret_cast<const char*>(mac), sizeof mac});
}

std::string MacOf(const std::vector<std::pair<std::string, std::string>>& interfaces) {
  const TempDir directory;
  for (const auto& [name, address] : interfaces) directory.Write(name + "/address", address);
  return MacUnder(directory.Path(""));
}

TEST(MacAddress, IsThatOfEth0ElseTheFirstByNameThatHasOne) {
  const std::string zero = "00:00:00:00:00:00\n";
  const std::string a = "0a:1B:2c:3D:4e:fF\n";
  const std::string b = "00:00:00:00:00:01\n";
  EXPECT_EQ(MacOf({{"can0", b}, {"eth0", a}, {"lo", zero}}), "0a 1b 2c 3d 4e ff");
  EXPECT_EQ(MacOf({{"wlan0", b}, {"lo", zero}, {"enp3s0", a}, {"usb0", b}}), "0a 1b 2c 3d 4e ff");
  EXPECT_EQ(MacOf({{"eth0", zero}, {"wlan0", b}}), "00 00 00 00 00 01");
  EXPECT_EQ(MacOf({{"lo", zero}}), kNone);
}

// The serial number from MFG_FILE; "none" when there is none.
std::string SerialIn(const std::string& path) {
  setenv("MFG_FILE", path.c_str(), 1);
  std::string serial = "untouched";
  const bool given = MfgItem::GetSystemSerialNumber(serial);
  unsetenv("MFG_FILE");
  EXPECT_TRUE(given || serial == "untouched");
  return given ? serial : "none";
}

TEST(SerialNumber, IsTheFirstLineTrimmed) {
  const std::pair<std::string, std::string> cases[] = {
      {"SN-0042", "SN-0042"},
      {" \r\n\tSN 0042 \t\r\nsecond line\n", "SN 0042"},
      {"SN-0042\0rest"s, "SN-0042"},
      {"", "none"},
      {" \n\t\r\n\0\n"s, "none"},
      {std::string(1000000, 's'), std::string(256, 's')},
      {std::string(1000000, '\0') + "SN", "none"},
      {std::string(255, ' ') + "xy", "x"},
  };
  const TempDir directory;
  for (const auto& [content, serial] : cases) {
    EXPECT_EQ(SerialIn(directory.Write("serial", content)), serial) << content.substr(0, 40);
  }
}

TEST(SerialNumber, IsLookedForWhereTheEarlierPlacesHoldNone) {
  const TempDir directory;
  const std::string pipe = directory.Path("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);  // without a writer
  std::vector<std::string> paths = {directory.Path("missing"), directory.Path(""), pipe, "/dev/zero"};
  for (const std::string& path : paths) EXPECT_EQ(SerialIn(path), "none") << path;
  paths.push_back(directory.Write("first", "1"));
  paths.push_back(directory.Write("second", "2"));
  std::vector<const char*> files;
  files.reserve(paths.size());
  for (const std::string& path : paths) files.push_back(path.c_str());
  std::string serial;
  EXPECT_TRUE(FirstSerialNumber(files, serial));
  EXPECT_EQ(serial, "1");
}

// The recorder and the reader both get their paths this way.
TEST(EnvironmentTest, AnEmptyPathIsNone) {
  setenv("MM_TEST_PATH", "", 1);
  EXPECT_STREQ(KvGetenv("MM_TEST_PATH"), "") << "a switch is on, whatever its value";
  EXPECT_EQ(KvGetenvText("MM_TEST_PATH"), nullptr);
  setenv("MM_TEST_PATH", "/mnt", 1);
  EXPECT_STREQ(KvGetenvText("MM_TEST_PATH"), "/mnt");
  unsetenv("MM_TEST_PATH");
  EXPECT_EQ(KvGetenvText("MM_TEST_PATH"), nullptr);
}

}  // namespace
