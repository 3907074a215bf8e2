// A MetadataMgr that is started by hand.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

#include "BenchRun.h"

namespace {

using testing::HasSubstr;

// Starts the stub with the settings that the bench said.
std::unique_ptr<Child> StartByHand(const BenchRun& bench) {
  const std::string output = bench.Output();
  const std::size_t begin = output.find("\nenv ") + 1;
  std::string command = output.substr(begin, output.find(" MetadataMgr\n", begin) - begin);
  command += std::string(" ") + STUB_METADATAMGR;
  return std::make_unique<Child>(
      std::vector<std::string>{"/bin/sh", "-c", "exec " + command + " 2>/dev/null"});
}

TEST(AttachedBench, LeadsAMetadataMgrThatIsStartedAgainToFullRun) {
  BenchRun bench;
  bench.UseDirectory("it's a directory");
  bench.Drive("0 ping\n");
  bench.Start({"--attach"});
  ASSERT_TRUE(bench.Said(" MetadataMgr\n")) << bench.Output();
  EXPECT_EQ(bench.Send({"ping"}), 1);
  EXPECT_THAT(bench.SendOutput(), HasSubstr("not at full run"));
  {
    const auto first = StartByHand(bench);
    ASSERT_TRUE(bench.Said("ping: answered")) << bench.Output();
    first->Signal(SIGKILL);
    EXPECT_EQ(first->Wait(), 128 + SIGKILL);
  }
  EXPECT_EQ(bench.Send({"ping"}), 1);
  EXPECT_THAT(bench.SendOutput(), HasSubstr("MetadataMgr is not there"));
  const std::size_t before = bench.Output().size();
  const auto second = StartByHand(bench);
  ASSERT_TRUE(bench.SaidAfter(before, "MetadataMgr told full run")) << bench.Output();
  EXPECT_EQ(bench.Send({"bookmark"}), 0) << bench.SendOutput();
  EXPECT_EQ(bench.Send({"quit"}), 0) << bench.SendOutput();
  EXPECT_EQ(bench.Finish(), 1);  // the ping in between
  EXPECT_EQ(second->Wait(), 0);
  EXPECT_THAT(bench.Output(), HasSubstr("MetadataMgr answered the shut-down"));
  EXPECT_THAT(bench.Output(), HasSubstr("problems: 1, the first: ping (Send-"));
}

}  // namespace
