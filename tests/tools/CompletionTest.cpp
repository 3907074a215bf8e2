// What the shell offers for a command line.
#include <sstream>

#include "ReaderFixture.h"

namespace {

using testing::AllOf;
using testing::Contains;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

struct Words {
  std::vector<std::string> words;
  friend std::ostream& operator<<(std::ostream& out, const Words& line) {
    for (const std::string& word : line.words) out << word << ' ';
    return out;
  }
};

// As bash does it when Tab is pressed behind the last of the words.
std::vector<std::string> Offered(const std::vector<std::string>& words) {
  constexpr const char* kTab =
      "source " COMPLETION
      "; complete -p metadata >&2; COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1)); _metadata; "
      "printf '%s\\n' \"${COMPREPLY[@]}\"";
  std::vector<std::string> arguments = {"bash", "-c", kTab, "bash", METADATA_PROGRAM};
  arguments.insert(arguments.end(), words.begin(), words.end());
  const Ran ran = RunProgram(arguments);
  EXPECT_EQ(ran.said, "complete -o default -F _metadata metadata\n");
  std::vector<std::string> offered;
  std::istringstream lines(ran.out);
  for (std::string line; std::getline(lines, line);) offered.push_back(line);
  return offered;
}

TEST(CompletionTest, OffersCommandsOptionsAndValues) {
  if (!IsInstalled("bash")) GTEST_SKIP() << "bash is not installed";
  const std::pair<Words, std::vector<std::string>> cases[] = {
      {{{"d"}}, {"dump"}},
      {{{"ask", ""}}, {"tick", "ping", "copy", "loglevel", "quit"}},
      {{{"ask", "copy", "--t"}}, {"--timeout"}},
      {{{"dump", "--f"}}, {"--from", "--format"}},
      {{{"dump", "--format", ""}}, {"text", "csv", "jsonl"}},
      {{{"export", "--format", "=", "g"}}, {"gpx", "geojson"}},
      {{{"export", "--video-start", "record-st"}}, {"record-start", "record-stop"}},
      {{{"state", "file.db", "--at", "cras"}}, {"crash", "crash-cleared"}},
      {{{"dump", "--source", "speed-"}}, {"speed-gps", "speed-radar"}},
      {{{"dump", "--source", "gps,inp"}}, {"gps,inputs"}},
      {{{"dump", ""}}, {""}},  // files, which the shell offers where there is nothing else
      {{{"export", "-o", ""}}, {""}},
  };
  for (const auto& [words, offered] : cases) EXPECT_EQ(Offered(words.words), offered) << words;
  EXPECT_THAT(Offered({""}), AllOf(Contains("info"), Contains("export"), Not(Contains("complete"))));
}

// Every command and option is explained, and has examples.
TEST(HelpTest, ManPageAndHelpHaveEverything) {
  if (!IsInstalled("bash")) GTEST_SKIP() << "bash is not installed";
  const std::string page = RunProgram({"sed", "s/\\\\//g", MAN_PAGE}).out;
  for (const std::string& command : Offered({""})) {
    EXPECT_THAT(page, ContainsRegex("\n\\.BR? \"?" + command + "( |\n)"));
    EXPECT_THAT(Metadata({command, "--help"}).out,
                ContainsRegex("\nExamples:\n(  metadata " + command + "[^\n]*\n)+$"));
    for (const std::string& option : Offered({command, "--"}))
      EXPECT_THAT(page, HasSubstr(option)) << command;
  }
}

}  // namespace
