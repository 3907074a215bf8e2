// The completions that the shell offers for a command line.
#include <sstream>

#include "ReaderFixture.h"

namespace {

using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

// Completes a line as bash does when Tab is pressed at its end.
std::string Offered(const std::string& line) {
  constexpr const char* kTab =
      "source " COMPLETION
      "; complete -p metadata >&2; COMP_WORDS=(\"$0\" $1); [[ $1 =~ (^|\\ )$ ]] && COMP_WORDS+=(\"\"); "
      "COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _metadata; echo -n \"${COMPREPLY[*]}\"";
  const Ran ran = RunProgram({"bash", "-c", kTab, METADATA_PROGRAM, line});
  EXPECT_EQ(ran.said, "complete -o default -F _metadata metadata\n");
  return ran.out;
}

TEST(CompletionTest, OffersCommandsOptionsAndValues) {
  if (!IsInstalled("bash")) GTEST_SKIP() << "bash is not installed";
  constexpr std::pair<const char*, const char*> kCases[] = {
      {"d", "dump diff"},
      {"ask ", "tick ping copy loglevel quit seal"},
      {"ask copy --t", "--timeout"},
      {"dump --f", "--from --format"},
      {"dump --format ", "text csv jsonl"},
      {"export --format = g", "gpx geojson"},
      {"export --video-start record-st", "record-start record-stop"},
      {"state file.db --at cras", "crash crash-cleared"},
      {"dump --source speed-", "speed-gps speed-radar"},
      {"dump --source gps,inp", "gps,inputs"},
      {"dump ", ""},  // the shell then offers files
      {"export -o ", ""},
  };
  for (const auto& [line, offered] : kCases) EXPECT_EQ(Offered(line), offered) << line;
  EXPECT_THAT(Offered(""), AllOf(HasSubstr("info"), HasSubstr("export"), Not(HasSubstr("complete"))));
}

// The man page and the help explain every command and option, with examples.
TEST(HelpTest, ManPageAndHelpHaveEverything) {
  if (!IsInstalled("bash")) GTEST_SKIP() << "bash is not installed";
  const std::string page = RunProgram({"sed", "s/\\\\//g", MAN_PAGE}).out;
  std::istringstream commands(Offered(""));
  for (std::string command; commands >> command;) {
    EXPECT_THAT(page, ContainsRegex("\n\\.BR? \"?" + command + "( |\n)"));
    EXPECT_THAT(Metadata({command, "--help"}).out,
                ContainsRegex("\nExamples:\n(  metadata " + command + "[^\n]*\n)+$"));
    std::istringstream options(Offered(command + " --"));
    for (std::string option; options >> option;) EXPECT_THAT(page, HasSubstr(option)) << command;
  }
}

}  // namespace
