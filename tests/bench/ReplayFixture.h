#pragma once

#include <string>
#include <vector>

#include "BenchRun.h"
#include "Tables.h"
#include "support/Program.h"

inline Ran Diff(const std::string& a, const std::string& b, const std::vector<std::string>& options = {}) {
  std::vector<std::string> arguments{METADATA_PROGRAM, "diff", a, b};
  arguments.insert(arguments.end(), options.begin(), options.end());
  return RunProgram(arguments);
}

// Texts that a drive cannot write, readings with all fields, several parts of an item at once, a video
// recording that runs at the start, a death, a lost fix.
inline const std::string kAwkwardDrive =
    "before direct record start\nbefore gps none\nbefore radar none\n"
    "before payload ConfigMgr officer 0000000423205f09\n"
    "0 payload GpsHal gps 000a0014000007d000000000000c0028000001f400000001013531e801f4010e0384000c00000002"
    "0000000300007fff000000090000002f02faf08001000003e8\n"
    "0.1 payload MicMgr mic 00020000000201010000001f0001000003e8\n"
    "0.2 payload TempHal temp fff60001000200ff00000bb8\n0.3 gps none\n0.3 radar none\n0.4 radar 1 2 3 4\n"
    "0.5 kill GpsHal\n0.6 start GpsHal\n0.7 gps fix -1 -2 3 4 5\n0.8 input lights on siren on door on\n"
    "0.9 crash on\n1 covert on\n1 covert off\n1.1 bookmark\n1.2 quality 2 1x2 3 4\n1.3 record stop\n"
    "1.4 record start\n1.5 camera entries 1 2 3 4 0 2 0 0 0\n1.6 stream 3 7\n"
    "1.7 live 5 on 7 10.1.2.3 99 hq\n2 gps fix 1 2 3 4 5\n2.2 gps fix 2 2 3 4 5\n2.5 ping\n2.5 quit\n";

// The SQL for each table; "!" stands for its name.
inline std::string ForEachTable(const std::string& sql) {
  std::string all;
  for (const store::Table& table : store::kTables) {
    std::string one = sql;
    for (std::size_t at = 0; (at = one.find('!', at)) != std::string::npos;) one.replace(at, 1, table.name);
    all += one;
  }
  return all;
}
