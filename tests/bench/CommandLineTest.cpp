#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "BenchRun.h"

namespace {

using testing::HasSubstr;

TEST(CommandLine, EndsWithStatusAndText) {
  const TempDir directory;
  const std::string good = directory.Write("good.drive", "0 ping\n1 quit\n");
  const std::string bad = directory.Write("bad.drive", "0 ping\n1 quiet\n");
  struct Call {
    std::vector<std::string> arguments;
    int status;
    std::string says;
  };
  const Call calls[] = {
      {{"--help"}, 0, "Subcommands:"},
      {{"--version"}, 0, "vehiclebench 0.1.0\n"},
      {{"run", "--help"}, 0, "--stop-deadline SECONDS"},
      {{"check", "--help"}, 0, "direct record start [ID]"},
      {{"send", "--help"}, 0, "direct record start [ID]"},
      {{}, 2, "subcommand is required"},
      {{"drive"}, 2, "--help"},
      {{"run", "--fast"}, 2, "--fast"},
      {{"run", "--speed", "0"}, 2, "--speed"},
      {{"run", "--drive", bad}, 2, bad + ":2: 'quiet' is not a verb\n"},
      {{"run", "--out", "/dev/null/x"}, 1, "cannot create"},
      {{"run", "--nmea", "/nowhere"}, 2, "/nowhere: cannot be read, or tells no place\n"},
      {{"run", "--gpsd", "localhost:0"}, 2, "'localhost:0' is not HOST:PORT\n"},
      {{"run", "--gpsd", "[::1]:65536"}, 2, "'[::1]:65536' is not HOST:PORT\n"},
      {{"check", good}, 0, good + ": good, 2 lines\n"},
      {{"check", bad}, 2, bad + ":2: 'quiet' is not a verb\n"},
      {{"check", "/nowhere"}, 2, "/nowhere: cannot be read"},
      {{"send"}, 2, "WORDS"},
      {{"send", "pong"}, 2, "'pong' is not a verb"},
      {{"send", "--out", directory.Path("none"), "ping"}, 1, "is there a bench?"},
  };
  for (const Call& call : calls) {
    const Ran ran = RunVehicleBench(call.arguments);
    EXPECT_EQ(ran.status, call.status) << testing::PrintToString(call.arguments);
    EXPECT_THAT(ran.out + ran.said, HasSubstr(call.says)) << testing::PrintToString(call.arguments);
  }
}

}  // namespace
