#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>

#include "support/TempDir.h"
#include "system/VersionApi.h"

namespace {

using namespace std::string_view_literals;

class VersionApiTest : public testing::Test {
 protected:
  // The entries of a file with this content, as "name>version|".
  std::string Parsed(std::string_view content) {
    std::vector<VersionEntry> entries;
    VersionApi::GetAllVersions(entries, directory_.Write("versions", content));
    std::string text;
    for (const VersionEntry& entry : entries) text += entry.name() + ">" + entry.asString_sw() + "|";
    return text;
  }

  TempDir directory_;
};

TEST_F(VersionApiTest, LinesAreNameAndVersion) {
  struct Case {
    std::string_view content;
    const char* entries;
  };
  constexpr Case kCases[] = {
      {"", ""},
      {"BUILD=1.2.3\n", "BUILD>1.2.3|"},
      {"BUILD 1.2.3", "BUILD>1.2.3|"},
      {"BUILD\t= 1.2.3 rc 4 \r\n", "BUILD>1.2.3 rc 4|"},
      {"  FPGA_BUILD   7\n\nKERNEL=5\nBUILD=8", "FPGA_BUILD>7|KERNEL>5|BUILD>8|"},
      {"A=b=c\nB==x", "A>b=c|B>=x|"},
      {"# BUILD=1\n  #BUILD=2\nBUILD=#3", "BUILD>#3|"},
      {"BUILD\nBUILD=\nBUILD  \nBUILD = \n=1\n= 1\n \n=\n", ""},
      {"A=1\0\nB\0=2\n\0\0\n"sv, "A>1|B>2|"},
  };
  for (const auto& [content, entries] : kCases) EXPECT_EQ(Parsed(content), entries) << content;
}

TEST_F(VersionApiTest, EntriesAreAppended) {
  std::vector<VersionEntry> entries;
  VersionApi::GetAllVersions(entries, directory_.Write("a", "A=1"));
  VersionApi::GetAllVersions(entries, directory_.Path("missing"));
  VersionApi::GetAllVersions(entries, directory_.Path("."));
  VersionApi::GetAllVersions(entries, directory_.Write("b", "B=2"));
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_EQ(entries[0].name(), "A");
  EXPECT_STREQ(entries[1].asString_sw(), "2");
}

TEST_F(VersionApiTest, ReadsWholeLinesOfTheFirst64KiB) {
  const std::string line = "NAME=" + std::string(94, '1') + "\n";  // 100 bytes
  std::string content;
  for (int i = 0; i < 1000; ++i) content += line;
  std::vector<VersionEntry> entries;
  VersionApi::GetAllVersions(entries, directory_.Write("versions", content));
  ASSERT_EQ(entries.size(), 655U);
  EXPECT_EQ(entries.back().asString_sw(), std::string(94, '1'));
  EXPECT_EQ(Parsed("A=" + std::string(1000000, '1')), "");
}

TEST_F(VersionApiTest, AnyContentGivesOnlyWholeEntries) {
  std::mt19937 random(1);
  constexpr std::string_view kBytes = "A= \t\n\r#\0\x80\xFF"sv;
  for (int round = 0; round < 300; ++round) {
    std::string content(random() % 200, '\0');
    for (char& byte : content) byte = kBytes[random() % kBytes.size()];
    std::vector<VersionEntry> entries;
    VersionApi::GetAllVersions(entries, directory_.Write("versions", content));
    for (const VersionEntry& entry : entries) {
      ASSERT_FALSE(entry.name().empty());
      ASSERT_EQ(entry.name().find_first_of(" \t\n="), std::string::npos);
      ASSERT_EQ(std::string_view(entry.asString_sw()).find('\n'), std::string_view::npos);
      ASSERT_NE(*entry.asString_sw(), '\0');
    }
  }
}

}  // namespace
