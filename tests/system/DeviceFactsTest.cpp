#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "DeviceFiles.h"
#include "support/TempDir.h"
#include "system/MfgItem.h"
#include "system/SystemInformation.h"

namespace {

using namespace std::string_literals;

using Mac = std::vector<unsigned char>;
const Mac kNone(6, 0);

Mac MacOf(const std::vector<std::pair<std::string, std::string>>& interfaces) {
  const TempDir directory;
  for (const auto& [name, address] : interfaces) directory.Write(name + "/address", address);
  unsigned char mac[6] = {9, 9, 9, 9, 9, 9};
  MacAddressUnder(directory.Path(""), mac);
  return {mac, mac + 6};
}

TEST(MacAddress, IsThatOfEth0ElseTheFirstByNameThatHasOne) {
  const std::string zero = "00:00:00:00:00:00\n";
  const std::string a = "0a:1B:2c:3D:4e:fF\n";
  const std::string b = "00:00:00:00:00:01\n";
  const Mac macA{0x0A, 0x1B, 0x2C, 0x3D, 0x4E, 0xFF};
  const Mac macB{0, 0, 0, 0, 0, 1};
  EXPECT_EQ(MacOf({{"eth0", a}}), macA);
  EXPECT_EQ(MacOf({{"can0", b}, {"eth0", a}, {"lo", zero}}), macA);
  EXPECT_EQ(MacOf({{"wlan0", b}, {"lo", zero}, {"enp3s0", a}, {"usb0", b}}), macA);
  EXPECT_EQ(MacOf({{"eth0", zero}, {"wlan0", b}}), macB);
  EXPECT_EQ(MacOf({{"eth0", "gibberish"}, {"wlan0", b}}), macB);
  EXPECT_EQ(MacOf({{"lo", zero}}), kNone);
  EXPECT_EQ(MacOf({}), kNone);
}

TEST(MacAddress, TextThatIsNoneIsRefused) {
  for (const std::string& text :
       {""s, "\n"s, "01:02:03:04:05"s, "01:02:03:04:05:0"s, "01:02:03:04:05:0g"s, "01-02-03-04-05-06"s,
        "01:02:03:04:05:06:07"s, "-1:02:03:04:05:06"s, " 1:02:03:04:05:06"s, "0x:02:03:04:05:06"s,
        "01:02:03:04:05:06x"s, "80:00:02:08:fe:80:00:00:00:00:00:00:00:02:c9:03:00:00:00:01\n"s,
        std::string(17, '\0'), std::string(100000, '1')}) {
    EXPECT_EQ(MacOf({{"eth0", text}}), kNone) << text.substr(0, 80);
  }
}

TEST(MacAddress, NothingToReadGivesZeros) {
  const TempDir directory;
  unsigned char mac[6] = {9, 9, 9, 9, 9, 9};
  MacAddressUnder(directory.Path("missing"), mac);
  EXPECT_EQ(Mac(mac, mac + 6), kNone);
  // Neither does an interface directory without, or with an unreadable, address.
  std::filesystem::create_directories(directory.Path("eth0/address"));
  std::filesystem::create_directories(directory.Path("eth1"));
  std::fill_n(mac, 6, static_cast<unsigned char>(9));
  MacAddressUnder(directory.Path(""), mac);
  EXPECT_EQ(Mac(mac, mac + 6), kNone);
}

TEST(MacAddress, OfThisMachineOverwritesWhatWasThere) {
  unsigned char first[6] = {9, 9, 9, 9, 9, 9};
  unsigned char second[6] = {};
  SystemInformation::GetShortMacAddress(first);
  SystemInformation::GetShortMacAddress(second);
  EXPECT_TRUE(std::equal(first, first + 6, second));
}

class SerialNumber : public testing::Test {
 protected:
  ~SerialNumber() override { unsetenv("MFG_FILE"); }

  // The serial number that MFG_FILE gives; "none" when it gives none.
  std::string SerialIn(const std::string& path) {
    setenv("MFG_FILE", path.c_str(), 1);
    std::string serial = "untouched";
    if (MfgItem::GetSystemSerialNumber(serial)) return serial;
    EXPECT_EQ(serial, "untouched");
    return "none";
  }

  TempDir directory_;
};

TEST_F(SerialNumber, IsTheFirstLineTrimmed) {
  const std::pair<std::string, std::string> cases[] = {
      {"SN-0042", "SN-0042"},
      {"SN-0042\n", "SN-0042"},
      {"SN-0042\0"s, "SN-0042"},
      {" \r\n\tSN 0042 \t\r\nsecond line\n", "SN 0042"},
      {"SN-0042\0rest"s, "SN-0042"},
      {"x", "x"},
      {"", "none"},
      {"\0"s, "none"},
      {" \n\t\r\n\0\n"s, "none"},
      {std::string(1000000, 's'), std::string(256, 's')},
      {std::string(1000000, '\0') + "SN", "none"},
      {std::string(255, ' ') + "xy", "x"},
  };
  for (const auto& [content, serial] : cases) {
    EXPECT_EQ(SerialIn(directory_.Write("serial", content)), serial) << content.substr(0, 40);
  }
}

TEST_F(SerialNumber, FileThatCannotBeReadHoldsNone) {
  const std::string pipe = directory_.Path("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);  // and nobody ever writes to it
  for (const std::string& path : {""s, directory_.Path("missing"), directory_.Path(""), pipe, "/dev/zero"s}) {
    EXPECT_EQ(SerialIn(path), "none") << path;
  }
}

TEST_F(SerialNumber, LaterPlacesAreReadWhereTheEarlierHoldNone) {
  const std::string missing = directory_.Path("missing");
  const std::string blank = directory_.Write("blank", "\n");
  const std::string first = directory_.Write("first", "1");
  const std::string second = directory_.Write("second", "2");
  const char* files[] = {missing.c_str(), blank.c_str(), first.c_str(), second.c_str()};
  std::string serial;
  EXPECT_TRUE(FirstSerialNumber(files, serial));
  EXPECT_EQ(serial, "1");
  EXPECT_FALSE(FirstSerialNumber(std::span(files).first(2), serial));
  EXPECT_EQ(serial, "1");
}

}  // namespace
