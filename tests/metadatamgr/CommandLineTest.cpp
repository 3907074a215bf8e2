#include "Car.h"

namespace {

const std::string kUsage =
    "Usage:\n" MM_PROGRAM
    " [-l OR --loglevel LEVEL] [-s OR --simulator] [-r OR --radar Radar Only Simulation] \n"
    "    LEVEL = LogLevel for this process\n";

TEST(CommandLine, HelpAndWhatItDoesNotKnowGiveTheUsage) {
  const Arguments table[] = {{"-h"},         {"--help"},        {"-?"},
                             {"-x"},         {"--unknown"},     {"-l"},
                             {"--loglevel"}, {"-l", "0", "-h"}, {"--simulator=1"},
                             {"-rx"}};
  Car car;
  for (const Arguments& arguments : table) {
    SCOPED_TRACE(arguments.back());
    car.Start(arguments);
    EXPECT_EQ(car.End(), 1);
    EXPECT_EQ(car.program->Err().substr(0, kUsage.size()), kUsage);
    const Lines log = LogText(car.program->Err().substr(kUsage.size()));
    EXPECT_EQ(log, Lines{"1 MetadataMgr: MetadataMgr abnormal shutdown due to Invalid Usage"});
  }
  EXPECT_TRUE(car.stateMgr.HasHeardNothing());
}

TEST(CommandLine, SetsTheLogLevel) {
  const struct {
    Arguments arguments;
    const char* level;
  } table[] = {{{}, "00 00 00 07"},
               {{"-l", "0x10"}, "00 00 00 00"},
               {{"-l", "abc"}, "00 00 00 00"},
               {{"--loglevel=67x"}, "00 00 00 43"},
               {{"--loglevel", "1", "-l", "255"}, "00 00 00 ff"},
               {{"-l", "-1"}, "ff ff ff ff"}};
  Car car;
  for (const auto& row : table) {
    SCOPED_TRACE(row.level);
    car.Begin(row.arguments);
    EXPECT_EQ(car.stateMgr.Ask(kLogLevelGet, "00 00 00 00", kLogLevel), row.level);
  }
}

TEST(CommandLine, AnnouncesTheSimulationModesInTheOrderGiven) {
  const struct {
    Arguments arguments;
    const char* out;
  } table[] = {{{"-s", "-r"}, "Running Simulation Mode\nSimulate Radar Only Mode\n"},
               {{"--radar", "--simulator"}, "Simulate Radar Only Mode\nRunning Simulation Mode\n"},
               {{"-r"}, "Simulate Radar Only Mode\n"}};
  Car car;
  for (const auto& row : table) {
    car.Begin(row.arguments);
    EXPECT_EQ(car.program->Out(), row.out);
  }
}

}  // namespace
