#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>

#include "support/TempDir.h"
#include "system/VersionApi.h"

namespace {

using namespace std::string_view_literals;

// The entries of the files, each as "name>version|".
std::string EntriesOf(const std::vector<std::string>& files) {
  std::vector<VersionEntry> entries;
  for (const std::string& file : files) VersionApi::GetAllVersions(entries, file);
  std::string text;
  for (const VersionEntry& entry : entries) text += entry.name() + ">" + entry.asString_sw() + "|";
  return text;
}

TEST(VersionApi, LinesAreNameAndVersion) {
  constexpr std::pair<std::string_view, const char*> kCases[] = {
      {"", ""},
      {"BUILD 1.2.3", "BUILD>1.2.3|"},
      {"BUILD\t= 1.2.3 rc 4 \r\n", "BUILD>1.2.3 rc 4|"},
      {"  FPGA_BUILD   7\n\nKERNEL=5\nBUILD=8", "FPGA_BUILD>7|KERNEL>5|BUILD>8|"},
      {"A=b=c\nB==x", "A>b=c|B>=x|"},
      {"# BUILD=1\n  #BUILD=2\nBUILD=#3", "BUILD>#3|"},
      {"BUILD\nBUILD=\nBUILD  \nBUILD = \n=1\n= 1\n \n=\n", ""},
      {"A=1\0\nB\0=2\n\0\0\n"sv, "A>1|B>2|"},
      {"\xFF=\x80", "\xFF>\x80|"},
  };
  const TempDir directory;
  for (const auto& [content, entries] : kCases)
    EXPECT_EQ(EntriesOf({directory.Write("versions", content)}), entries) << content;
  EXPECT_EQ(EntriesOf({directory.Write("a", "A=1"), directory.Path("missing"), directory.Path("."),
                       directory.Write("b", "B=2")}),
            "A>1|B>2|")
      << "appended";
}

// Each call reads the environment again.
TEST(VersionApi, TheSystemsFileMayBeAnother) {
  const TempDir directory;
  setenv("VERSION_FILE", directory.Write("versions", "BUILD=7").c_str(), 1);
  EXPECT_EQ(EntriesOf({VersionApi::versionFile}), "BUILD>7|");
  EXPECT_EQ(EntriesOf({directory.Path("other")}), "");
  unsetenv("VERSION_FILE");
}

}  // namespace
