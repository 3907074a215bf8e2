#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <utility>

#include "ArgumentTypes.h"
#include "Drive.h"
#include "support/TempDir.h"

namespace bench {

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

std::string ErrorsOf(std::string_view text) {
  Drive drive;
  std::string all;
  for (const std::string& error : ParseDrive("x.drive", text, drive)) all += error + "\n";
  return all;
}

// The lines of a drive, each as "MILLISECONDS WORDS".
std::string LinesOf(std::string_view text) {
  Drive drive;
  EXPECT_THAT(ParseDrive("x.drive", text, drive), IsEmpty());
  std::string lines;
  for (const Command& command : drive.before) lines += "before " + JoinWords(command.words) + "\n";
  for (const DriveLine& line : drive.lines)
    lines += std::to_string(line.at.count()) + " " + JoinWords(line.command.words) + "\n";
  return lines;
}

TEST(Drive, IsTimedLinesWithBlankLinesAndComments) {
  EXPECT_EQ(LinesOf("# a drive\n"
                    "before missing Fpga 20\n"
                    "before late GpsHal 5\n"
                    "0 ping\n"
                    "\n"
                    "0 ping # the same time again\n"
                    "\t0.5  direct record   start\tnight#1 \r\n"
                    "1.25 loglevel 0xFF\n"
                    "3.007 died GpsHal\n"
                    "1000000 quit"),
            "before missing Fpga 20\nbefore late GpsHal 5\n0 ping\n0 ping\n500 direct record start night#1\n"
            "1250 loglevel 0xFF\n3007 died GpsHal\n1000000000 quit\n");
  EXPECT_EQ(LinesOf(""), "");
}

TEST(Drive, NamesFileLineAndWordOfAnError) {
  const std::pair<std::string, std::string> cases[] = {
      {"ping", "'ping' is not a time"},
      {"1.2345 ping", "'1.2345' is not a time"},
      {"12345678 ping", "'12345678' is not a time"},
      {"0.099 ping", "'0.099' is earlier than the line before"},
      {"2", "'2' must be followed by a verb"},
      {"2 pong", "'pong' is not a verb"},
      {"2 record", "'record' must be followed by start or stop"},
      {"2 record begin", "'begin' is wrong: 'record' must be followed by start or stop"},
      {"2 ping now", "'now' is one word too many"},
      {"2 input door on aux", "'aux' must be followed by a SWITCH"},
      {"2 gps fix 90.1 0 0 0 0", "'90.1' is not a LATITUDE: -90 to 90: degrees"},
      {"2 temp 3 -32768", "'-32768' is not a CELSIUS: -32767 to 32767: whole degrees"},
      {"2 loglevel 4294967296", "'4294967296' is not a MASK: 0 to 4294967295: "},
      {"2 live 0 on 0 1.2.3.400 80", "'1.2.3.400' is not a ADDRESS: the IPv4 address"},
      {"2 mute StreamMgr", "'StreamMgr' is not a SERVER"},
      {"2 kill StateMgr", "'StateMgr' is not a FOLLOWER"},
      {"2 flood GpsHal temp 1", "'temp' is not a source of GpsHal"},
      {"2 start TempHal", "'TempHal' runs already"},
      {"2 wake GpsHal", "GpsHal does not run then"},
      {"2 gps none", "GpsHal does not run then"},
      {"before ping", "'before' comes after a time"},
      {"2 missing Fpga", "'missing' is only possible before"},
      {"2 died", "'died' must be followed by a PROCESS"},
      {"2 direct record start " + std::string(256, 'i'), "'" + std::string(60, 'i') + "...' is not a ID"},
      {"2 died " + std::string(1000, 'p'), "'ppp"},
      {"2 pi\x1b[2Jng\x7f", "'pi?[2Jng?' is not a verb"},
  };
  for (const auto& [text, error] : cases) {
    const std::string errors = ErrorsOf("0.1 kill GpsHal\n\n" + text + "\n");
    EXPECT_THAT(errors, StartsWith("x.drive:3: " + error)) << text;
    EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1) << errors;
  }
  EXPECT_EQ(ErrorsOf("1 quit\n1 ping\n"), "x.drive:2: 'ping' comes after quit\n");
  EXPECT_EQ(ErrorsOf("before direct record stop\n"),
            "x.drive:1: 'direct record stop' is only possible after the start\n");
  EXPECT_EQ(ErrorsOf("before missing GpsHal 5\nbefore missing Fpga\n1 start GpsHal\n2 start Fpga\n"
                     "3 kill Fpga\n4 kill Fpga\n5 start Fpga\n6 input door on\n"),
            "");
}

TEST(DefaultDrive, UsesEveryVerbButThoseOfTheLoadDriveAndTakesTwentySeconds) {
  Drive drive;
  std::set<const Verb*> used;
  ASSERT_THAT(ReadDrive(LOAD_DRIVE, drive), IsEmpty());
  for (const DriveLine& line : drive.lines) used.insert(line.command.verb);
  ASSERT_THAT(ReadDefaultDrive(drive), IsEmpty());
  for (const Command& command : drive.before) used.insert(command.verb);
  for (const DriveLine& line : drive.lines) used.insert(line.command.verb);
  for (const Verb& verb : Verbs()) EXPECT_EQ(used.count(&verb), 1U) << verb.pattern;
  EXPECT_EQ(NameOf(*drive.lines.back().command.verb), "quit");
  EXPECT_EQ(drive.lines.back().at, std::chrono::seconds(20));
}

// Formats a text as the page does: no capital letter at the begin, no full stop at the end.
std::string AsSentence(std::string text) {
  text[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(text[0])));
  text.pop_back();
  return text;
}

TEST(Documents, HaveEveryVerbAndArgument) {
  const std::string page = TextOfFile(BENCH_PAGE);
  for (const Verb& verb : Verbs()) {
    const std::string performer = verb.performer == std::string("Bench")        ? "director"
                                  : verb.performer == std::string(kNamedServer) ? "the server named"
                                                                                : verb.performer;
    EXPECT_THAT(page, HasSubstr("| `" + std::string(verb.pattern) + "` | " + performer + " | " +
                                AsSentence(verb.help) + " |\n"));
  }
  for (const ArgumentType& type : ArgumentTypes()) {
    EXPECT_THAT(page, HasSubstr("| `" + std::string(type.name) + "` | " + type.Describe() + " |\n"));
  }
}

}  // namespace

}  // namespace bench
