// Lines from another terminal, and the answers of the bench's processes to others.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "BenchRun.h"
#include "clients/StreamMgrApi.h"
#include "support/Eventually.h"

namespace {

using testing::HasSubstr;

TEST(SentLine, IsDoneAndAnswered) {
  BenchRun bench;
  bench.Drive("0 ping\n");
  bench.Start();
  ASSERT_TRUE(bench.Said("ping: answered")) << bench.Output();
  EXPECT_EQ(bench.Send({"bookmark"}), 0);
  EXPECT_THAT(bench.SendOutput(), HasSubstr("bookmark: bookmark notice received after "));
  for (const char* process : {"TempHal", "StreamMgr"}) {
    EXPECT_EQ(bench.Send({"died", process}), 0);
    EXPECT_EQ(bench.SendOutput(), std::string("died ") + process + ": told 10 processes\n");
  }
  EXPECT_THAT(bench.Output(), HasSubstr("  died TempHal (Send-"));

  setenv("LINX_IPC_DIR", bench.Path("ipc").c_str(), 1);
  LinxIpc ipc("Test");
  ASSERT_EQ(ipc.Init(), 0);
  const auto recording = [&ipc] { return StreamMgrApi::CurrentlyRecordingREID(ipc, 20000); };
  EXPECT_EQ(recording(), "");
  EXPECT_EQ(bench.Send({"direct", "record", "start", "night-7"}), 0);
  EXPECT_EQ(recording(), "night-7");
  EXPECT_EQ(bench.Send({"record", "start"}), 0);
  EXPECT_TRUE(Eventually([&] { return recording() == "bench-2"; }));
  EXPECT_EQ(bench.Send({"record", "stop"}), 0);
  EXPECT_TRUE(Eventually([&] { return recording().empty(); }));
  unsetenv("LINX_IPC_DIR");

  EXPECT_EQ(bench.Send({"quit"}), 0) << bench.SendOutput();
  EXPECT_EQ(bench.Finish(), 0) << bench.Output();
}

}  // namespace
