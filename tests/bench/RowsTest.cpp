// The default drive through the real MetadataMgr: the recording holds every event that the bench
// sent, once, in order, with its tick and values, and nothing else.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "BenchRun.h"
#include "SentRows.h"
#include "support/Eventually.h"

namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

// The default drive, up to the quit.
std::string DriveWithoutItsEnd() {
  std::ostringstream text;
  text << std::ifstream(DEFAULT_DRIVE).rdbuf();
  std::string drive = text.str();
  return drive.substr(0, drive.rfind('\n', drive.find(" quit")) + 1);
}

std::size_t Count(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += part.size()) ++count;
  return count;
}

std::vector<Compared> Compare(const BenchRun& bench) {
  std::vector<std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(bench.Path("mnt/metadata"))) {
    if (entry.path().extension() == ".db") files.push_back(entry.path());
  }
  EXPECT_EQ(files.size(), 1U);
  return CompareSentWithRecorded(bench.Path("sent"), files.at(0));
}

class Rows : public testing::TestWithParam<const char*> {};

// Ended only when everything has arrived: an end overtakes what others still say.
TEST_P(Rows, HoldEveryEventOnceInOrder) {
  BenchRun bench;
  bench.Drive(DriveWithoutItsEnd());
  std::vector<std::string> options{"--speed", GetParam()};
  if (const char* program = std::getenv("METADATAMGR")) options.insert(options.end(), {"--program", program});
  bench.Start(options);
  const pid_t id = bench.Id();
  ASSERT_TRUE(Eventually([&] { return Count(bench.Output(), "bookmark notice received") == 2; },
                         std::chrono::seconds(60)))
      << bench.Output();
  EXPECT_TRUE(Eventually([&] {
    const auto compared = Compare(bench);
    return std::all_of(compared.begin(), compared.end(),
                       [](const Compared& c) { return c.sent == c.recorded; });
  }));
  EXPECT_EQ(bench.Send({"quit"}), 0) << bench.SendOutput();
  ASSERT_EQ(bench.Finish(), 0) << bench.Output();

  for (const Compared& compared : Compare(bench))
    EXPECT_EQ(compared.sent, compared.recorded) << compared.what;
  EXPECT_THAT(bench.Output(), Not(HasSubstr("FAILED")));
  EXPECT_THAT(bench.Output(), HasSubstr("loglevel 255: level now 0xff"));
  EXPECT_THAT(bench.Output(), ContainsRegex("MetadataMgr: exit status 0, peak memory [1-9][0-9]* kB, CPU "));
  EXPECT_THAT(bench.Log("MetadataMgr"), HasSubstr("GpsStatusEventHandler"));
  EXPECT_FALSE(std::filesystem::exists("/dev/shm/metadata-bench-" + std::to_string(id)));
}

INSTANTIATE_TEST_SUITE_P(AtSpeed, Rows, testing::Values("10", "1"),
                         [](const auto& speed) { return std::string(speed.param); });

}  // namespace
