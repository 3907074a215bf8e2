#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "Drive.h"
#include "support/TempDir.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

std::vector<std::string> ErrorsOf(std::string_view text) {
  Drive drive;
  return ParseDrive("x.drive", text, drive);
}

// Every line as "MILLISECONDS WORDS".
std::vector<std::string> LinesOf(std::string_view text) {
  Drive drive;
  EXPECT_THAT(ParseDrive("x.drive", text, drive), IsEmpty());
  std::vector<std::string> lines;
  for (const DriveLine& line : drive.lines) {
    lines.push_back(std::to_string(line.at.count()) + " " + JoinWords(line.command.words));
  }
  return lines;
}

TEST(Drive, IsTimedLinesWithBlankLinesAndComments) {
  EXPECT_THAT(LinesOf("# a drive\n"
                      "0 ping\n"
                      "\n"
                      "0 ping # the same time again\n"
                      "\t0.5  direct record   start\tnight#1 \r\n"
                      "1.25 loglevel 0xFF\n"
                      "3.007 died GpsHal\n"
                      "3.1 restarted 5\n"
                      "1000000 quit"),
              ElementsAre("0 ping", "0 ping", "500 direct record start night#1", "1250 loglevel 0xFF",
                          "3007 died GpsHal", "3100 restarted 5", "1000000000 quit"));
  EXPECT_THAT(LinesOf(""), IsEmpty());
}

struct BadLine {
  const char* name;
  std::string text;
  std::string error;
};

std::ostream& operator<<(std::ostream& out, const BadLine& line) {
  return out << line.name;
}

class BadDrive : public testing::TestWithParam<BadLine> {};

TEST_P(BadDrive, NamesFileLineAndWord) {
  EXPECT_THAT(ErrorsOf("0.1 ping\n\n" + GetParam().text + "\n"),
              ElementsAre(StartsWith("x.drive:3: " + GetParam().error)));
}

INSTANTIATE_TEST_SUITE_P(
    Lines, BadDrive,
    testing::Values(BadLine{"no_time", "ping", "'ping' is not a time"},
                    BadLine{"negative_time", "-1 ping", "'-1' is not a time"},
                    BadLine{"four_decimals", "1.2345 ping", "'1.2345' is not a time"},
                    BadLine{"no_decimals", "1. ping", "'1.' is not a time"},
                    BadLine{"no_seconds", ".5 ping", "'.5' is not a time"},
                    BadLine{"two_points", "1.2.3 ping", "'1.2.3' is not a time"},
                    BadLine{"endless_time", "12345678 ping", "'12345678' is not a time"},
                    BadLine{"earlier", "0.099 ping", "'0.099' is earlier than the line before"},
                    BadLine{"only_time", "2", "'2' must be followed by a verb"},
                    BadLine{"unknown_verb", "2 pong", "'pong' is not a verb"},
                    BadLine{"verb_in_capitals", "2 PING", "'PING' is not a verb"},
                    BadLine{"half_a_verb", "2 record", "'record' must be followed by start or stop"},
                    BadLine{"wrong_second_word", "2 record begin",
                            "'begin' is wrong: 'record' must be followed by start or stop"},
                    BadLine{"word_too_many", "2 ping now", "'now' is one word too many"},
                    BadLine{"optional_and_one_more", "2 direct record start a b", "'b' is one word too many"},
                    BadLine{"half_a_pair", "2 input door on aux", "'aux' must be followed by a SWITCH"},
                    BadLine{"beyond_the_pole", "2 gps fix 90.1 0 0 0 0", "'90.1' is not a LATITUDE"},
                    BadLine{"no_server", "2 mute StreamMgr", "'StreamMgr' is not a SERVER"},
                    BadLine{"before_after_a_time", "before ping", "'before' comes after a time"},
                    BadLine{"missing_at_a_time", "2 missing Fpga", "'missing' is only possible before"},
                    BadLine{"missing_process", "2 died", "'died' must be followed by a PROCESS"},
                    BadLine{"unknown_process", "2 died Gps", "'Gps' is not a PROCESS"},
                    BadLine{"mask_is_no_number", "2 loglevel 12x", "'12x' is not a MASK"},
                    BadLine{"mask_of_33_bits", "2 loglevel 0x100000000", "'0x100000000' is not a MASK"},
                    BadLine{"mask_without_digits", "2 loglevel 0x", "'0x' is not a MASK"},
                    BadLine{"long_recording_id", "2 direct record start " + std::string(256, 'i'),
                            "'" + std::string(60, 'i') + "...' is not a ID"},
                    BadLine{"long_line", "2 died " + std::string(1000, 'p'), "'ppp"},
                    BadLine{"control_characters", "2 pi\x1b[2Jng\x7f", "'pi?[2Jng?' is not a verb"}),
    [](const auto& line) { return std::string(line.param.name); });

TEST(Drive, TellsAllErrorsAtOnce) {
  EXPECT_THAT(ErrorsOf("x\n1 ping\n2 y\n"),
              ElementsAre(HasSubstr("x.drive:1: 'x'"), HasSubstr("x.drive:3: 'y'")));
}

TEST(Drive, IsToldOnceHowAVerbGoesOn) {
  EXPECT_THAT(ErrorsOf("1 direct\n"), ElementsAre("x.drive:1: 'direct' must be followed by record"));
}

TEST(Drive, HasNothingAfterQuit) {
  EXPECT_THAT(ErrorsOf("1 quit\n1 ping\n"), ElementsAre("x.drive:2: 'ping' comes after quit"));
}

TEST(Drive, OfAFileThatCannotBeReadIsAnError) {
  const TempDir directory;
  Drive drive;
  EXPECT_THAT(ReadDrive(directory.Path("none"), drive), ElementsAre(HasSubstr("/none: cannot be read")));
  EXPECT_THAT(ReadDrive(directory.Path("."), drive), ElementsAre(HasSubstr("/.: cannot be read")));
}

TEST(Drive, BeginsWithWhatIsDoneBeforeTheStart) {
  Drive drive;
  ASSERT_THAT(ParseDrive("x.drive", "before missing Fpga 20\nbefore late GpsHal 5\n0 ping\n", drive),
              IsEmpty());
  ASSERT_EQ(drive.before.size(), 2U);
  EXPECT_EQ(JoinWords(drive.before[0].words), "missing Fpga 20");
  EXPECT_EQ(JoinWords(drive.before[1].words), "late GpsHal 5");
  EXPECT_EQ(drive.lines.size(), 1U);
  EXPECT_THAT(ErrorsOf("before quit\n"), ElementsAre("x.drive:1: 'quit' is only possible after the start"));
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

}  // namespace
