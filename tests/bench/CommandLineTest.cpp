#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "BenchRun.h"

namespace {

using testing::HasSubstr;

struct Call {
  const char* name;
  std::vector<std::string> arguments;
  int status;
  const char* output;
};

std::ostream& operator<<(std::ostream& out, const Call& call) {
  return out << call.name;
}

class CommandLine : public testing::TestWithParam<Call> {};

TEST_P(CommandLine, EndsWithStatusAndText) {
  std::string output;
  EXPECT_EQ(RunVehicleBench(GetParam().arguments, output), GetParam().status);
  EXPECT_THAT(output, HasSubstr(GetParam().output));
}

INSTANTIATE_TEST_SUITE_P(
    Of, CommandLine,
    testing::Values(Call{"Help", {"--help"}, 0, "Subcommands:"},
                    Call{"RunHelp", {"run", "--help"}, 0, "--stop-deadline SECONDS"},
                    Call{"CheckHelp", {"check", "--help"}, 0, "direct record start [ID]"},
                    Call{"SendHelp", {"send", "--help"}, 0, "direct record start [ID]"},
                    Call{"Nothing", {}, 2, "subcommand is required"},
                    Call{"UnknownCommand", {"drive"}, 2, "--help"},
                    Call{"UnknownOption", {"run", "--fast"}, 2, "--fast"},
                    Call{"ImpossibleSpeed", {"run", "--speed", "0"}, 2, "--speed"},
                    Call{"AttachAndProgram", {"run", "--attach", "--program", "x"}, 2, "excludes"},
                    Call{"SendWithoutWords", {"send"}, 2, "WORDS"},
                    Call{"SendOfAnUnknownVerb", {"send", "pong"}, 2, "'pong' is not a verb"},
                    Call{"CheckOfNoFile", {"check", "/nowhere"}, 2, "/nowhere: cannot be read"},
                    Call{"RunOfNoFile", {"run", "--drive", "/nowhere"}, 2, "/nowhere: cannot be read"},
                    Call{"DirectoryThatCannotBe", {"run", "--out", "/dev/null/x"}, 1, "cannot create"}),
    [](const auto& call) { return std::string(call.param.name); });

TEST(Check, SaysWhatIsWrong) {
  const TempDir directory;
  const std::string good = directory.Write("good.drive", "0 ping\n1 quit\n");
  const std::string bad = directory.Write("bad.drive", "0 ping\n1 quiet\n");
  std::string output;
  EXPECT_EQ(RunVehicleBench({"check", good}, output), 0);
  EXPECT_EQ(output, good + ": good, 2 lines\n");
  EXPECT_EQ(RunVehicleBench({"check", bad}, output), 2);
  EXPECT_EQ(output, bad + ":2: 'quiet' is not a verb\n");
  EXPECT_EQ(RunVehicleBench({"run", "--drive", bad}, output), 2);
  EXPECT_EQ(output, bad + ":2: 'quiet' is not a verb\n");
}

}  // namespace
