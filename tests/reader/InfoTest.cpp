// The commands `info` and `state`.
#include "ReaderFixture.h"

namespace {

using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

TEST_F(ReaderTest, InfoTellsRunsSourcesGapsAndLosses) {
  options_.maxPendingBytes = 4096;
  Open();
  Store().ReportSystemSerialNum("SN-1");
  Store().ReportVersion(e_COMPONENT_Build, "2.1");
  for (int i = 0; i < 100; ++i) {  // one reading per second, except 40 to 49 and after 89
    if (i < 40 || (i >= 50 && i < 90)) Temperature(static_cast<short>(i));
    After(1000);
  }
  Connection other(File(1));
  other.Rows("BEGIN IMMEDIATE");
  for (int i = 0; i < 200; ++i) Store().ReportStringData(e_Tag_Filler, "too much for the memory");
  other.Rows("COMMIT");
  After(1000);
  Store().ReportShutdownData();
  Close();
  Open();
  Brakes(true);
  After(500);
  CopyFilesTo("later/metadata");
  Close();
  const Ran ran = Metadata({"info", dir_.Path("later")});
  EXPECT_EQ(ran.status, 0);
  EXPECT_THAT(
      ran.out,
      AllOf(HasSubstr("Run 1: 2024-05-01T12:00:00.000Z to 2024-05-01T12:01:41.000Z, 1 min 41 s, clean end\n"
                      "  ticks 10000 to 111000, "),
            HasSubstr("  serial             SN-1\n"), HasSubstr("  version 2          2.1\n"),
            HasSubstr("  temperature 0      temperature               80  2024-05-01T12:00:00.000Z  "
                      "2024-05-01T12:01:29.000Z\n"),
            HasSubstr("  temperature 0      every 1.0 s, 78.2 % covered, 2 gaps, the longest:\n"
                      "                       12.000 s from 2024-05-01T12:01:29.000Z\n"
                      "                       11.000 s from 2024-05-01T12:00:39.000Z\n"),
            ContainsRegex("  lost: [1-9][0-9]* records of string from tick 110000 to 110000\n"),
            HasSubstr("\nRun 2: 2024-05-01T12:01:41.000Z to 2024-05-01T12:01:41.000Z, 0 ms, cut off\n"),
            HasSubstr("  no recorded losses\n")));
}

TEST_F(ReaderTest, StateTellsTheLastValuesAndTheirAges) {
  Open();
  Temperature(20);
  Drive();
  Store().WriteFullState(true);
  Close();
  const auto at = [this](const std::string& instant) {
    return Metadata({"state", File(1), "--at", instant});
  };
  EXPECT_THAT(at("bookmark").out,
              AllOf(HasSubstr("Run 1 at 2024-05-01T12:00:00.800Z\n"),
                    HasSubstr("         1.0 s  brakes               on\n"),
                    HasSubstr("         1.0 s  speed gps            50 km/h\n"),
                    HasSubstr("         1.1 s  temperature 0        20 \u00B0C\n"), Not(HasSubstr("off\n"))));
  EXPECT_THAT(at("11200").out, AllOf(HasSubstr("Run 1 at 2024-05-01T12:00:01.200Z\n"),
                                     HasSubstr("        100 ms  brakes               off\n"),
                                     HasSubstr("        100 ms  temperature 0        -40 \u00B0C\n")));
  const Ran behind = at("2024-05-01T12:00:10Z");
  EXPECT_EQ(behind.status, 0);
  EXPECT_THAT(behind.out, HasSubstr("         8.9 s  brakes               off\n"))
      << "not since it was restated";
  EXPECT_EQ(behind.said, "metadata: nothing is recorded after 2024-05-01T12:00:10Z\n");
  const Ran before = at("9999");
  EXPECT_EQ(before.status, 1);
  EXPECT_EQ(before.said, "metadata: nothing is recorded at or before 9999\n");
}

TEST_F(ReaderTest, ProgramsReadWhatInfoGapsCheckAndStateTell) {
  if (!IsInstalled("jq")) GTEST_SKIP() << "jq is not installed";
  Open();
  for (short i = 0; i < 60; ++i) {  // one reading per second, except 30 to 39
    if (i < 30 || i >= 40) Temperature(i);
    After(1000);
  }
  Store().ReportShutdownData();
  Close();
  const auto by = [this](std::vector<std::string> words, const std::string& query) {
    words.insert(words.end(), {"--json", File(1)});
    return RunProgram({"jq", "-c", query, dir_.Write("told.json", Metadata(words).out)}).out;
  };
  EXPECT_EQ(by({"info"}, ".runs[]|.run,.first,.ended,.records,(.sources|length)"),
            "1\n\"2024-05-01T12:00:00.000Z\"\n\"clean end\"\n53\n3\n");
  constexpr const char* kGaps = "[.runs[].sources[]|[.source,.usualMs,.count,[.gaps[]|[.from,.ms]]]]";
  const std::string gap = "[\"2024-05-01T12:00:29.000Z\",11000]";
  EXPECT_EQ(by({"gaps"}, kGaps), "[[\"temperature 0\",1000,1,[" + gap + "]]]\n");
  EXPECT_EQ(by({"gaps", "--longer", "12"}, kGaps), "[[\"temperature 0\",1000,1,[]]]\n");
  EXPECT_EQ(by({"gaps", "--source", "gps"}, kGaps), "[]\n");
  EXPECT_EQ(by({"check"}, ".good,.files,.records,.findings"), "true\n1\n53\n[]\n");
  EXPECT_EQ(by({"state", "--at", "2024-05-01T12:00:37Z"},
               ".values[]|select(.source==\"temperature 0\")|[.text,.ageMs,.noData]"),
            "[\"29 \u00B0C\",8000,true]\n");
  EXPECT_THAT(Metadata({"gaps", File(1)}).out,
              HasSubstr("  1  temperature 0      2024-05-01T12:00:29.000Z  2024-05-01T12:00:40.000Z        "
                        "11.000 s  usually 1.0 s\n"));
}

TEST_F(ReaderTest, RunsStandInTheOrderOfTimeAndBetweenThemTheRecorderWasOff) {
  for (const char* base : {"z/metadata", "a/metadata"}) {
    std::filesystem::create_directories(dir_.Path(base).substr(0, dir_.Path(base).rfind('/')));
    Open(base);
    Brakes(true);
    After(10'000);
    Store().ReportShutdownData();
    Close();
    clock_.utcMs += 60'000;
  }
  const std::vector<std::string> both = {dir_.Path("a"), dir_.Path("z")};
  EXPECT_THAT(Metadata({"info", both[0], both[1]}).out,
              ContainsRegex("Run 1: 2024-05-01T12:00:00[^\n]*\n[^\n]*\n  file  *[^\n]*/z/"));
  const Ran between = Metadata({"state", "--at", "2024-05-01T14:00:30+02:00", both[0], both[1]});
  EXPECT_EQ(between.status, 0);
  EXPECT_THAT(between.out, AllOf(HasSubstr("Run 1 at 2024-05-01T12:00:30.000Z\n"),
                                 HasSubstr("The recorder was off: run 1 had ended 20.0 s before, run 2 began "
                                           "40.0 s later.\n")));
}

}  // namespace
