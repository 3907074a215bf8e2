#include "CommandLine.h"

#include <getopt.h>

#include <array>
#include <cstdlib>
#include <iostream>

#include "ManagerLog.h"
#include "ProcessState.h"

namespace {

void PrintUsage(const char* program) {
  std::cerr << "Usage:" << std::endl;
  std::cerr << program
            << " [-l OR --loglevel LEVEL] [-s OR --simulator] [-r OR --radar Radar Only Simulation] "
            << std::endl;
  std::cerr << "    LEVEL = LogLevel for this process" << std::endl;
  kManagerLog(kLogError, "MetadataMgr abnormal shutdown due to ", "Invalid Usage");
}

}  // namespace

bool ParseCommandLine(int argc, char** argv, unsigned int& logLevel) {
  static const std::array<option, 5> kOptions{{{"loglevel", required_argument, nullptr, 'l'},
                                               {"help", no_argument, nullptr, 'h'},
                                               {"simulator", no_argument, nullptr, 's'},
                                               {"radar", no_argument, nullptr, 'r'},
                                               {nullptr, 0, nullptr, 0}}};
  opterr = 0;  // prints the usage instead of getopt's messages
  for (;;) {
    switch (getopt_long(argc, argv, "rsl:h?", kOptions.data(), nullptr)) {
      case -1:
        return true;
      case 'l':
        logLevel = static_cast<unsigned int>(std::strtol(optarg, nullptr, 10));
        break;
      case 's':
        std::cout << "Running Simulation Mode" << std::endl;
        gSimulatorMode = true;
        break;
      case 'r':
        std::cout << "Simulate Radar Only Mode" << std::endl;
        gRadarOnlyMode = true;
        break;
      default:
        PrintUsage(argv[0]);
        return false;
    }
  }
}
