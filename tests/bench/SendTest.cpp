// Lines from another terminal, and the answers of the bench's processes to others.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "BenchRun.h"
#include "clients/StreamMgrApi.h"
#include "support/Eventually.h"

namespace {

using testing::HasSubstr;

class SentLine : public testing::Test {
 protected:
  void SetUp() override {
    bench_.Drive("0 ping\n");
    bench_.Start();
    ASSERT_TRUE(bench_.Said("ping: answered")) << bench_.Output();
  }
  void TearDown() override {
    EXPECT_EQ(bench_.Send({"quit"}), 0) << bench_.SendOutput();
    EXPECT_EQ(bench_.Finish(), 0) << bench_.Output();
  }

  BenchRun bench_{"good"};
};

TEST_F(SentLine, IsDoneAndAnswered) {
  EXPECT_EQ(bench_.Send({"bookmark"}), 0);
  EXPECT_THAT(bench_.SendOutput(), HasSubstr("bookmark: bookmark notice received after "));
  EXPECT_EQ(bench_.Send({"died", "TempHal"}), 0);
  EXPECT_EQ(bench_.SendOutput(), "died TempHal: told 10 processes\n");
  EXPECT_EQ(bench_.Send({"died", "StreamMgr"}), 0);
  EXPECT_EQ(bench_.SendOutput(), "died StreamMgr: told 10 processes\n");
  EXPECT_THAT(bench_.Output(), HasSubstr("  died TempHal (Send-"));
  EXPECT_TRUE(Eventually([this] { return bench_.Log("MetadataMgr") == "bookmark\ndied 14\ndied 20\n"; }));
}

TEST_F(SentLine, IsCheckedBeforeItIsSent) {
  const std::string before = bench_.Output();
  EXPECT_EQ(bench_.Send({"bookmark", "now"}), 2);
  EXPECT_EQ(bench_.SendOutput(), "'now' is one word too many\n");
  EXPECT_EQ(bench_.Output(), before);
}

TEST_F(SentLine, ChangesWhatTheStreamManagerAnswers) {
  setenv("LINX_IPC_DIR", bench_.Path("ipc").c_str(), 1);
  LinxIpc ipc("Test");
  ASSERT_EQ(ipc.Init(), 0);
  constexpr int kTimeoutMs = 20000;
  EXPECT_EQ(StreamMgrApi::CurrentlyRecordingREID(ipc, kTimeoutMs), "");
  EXPECT_EQ(bench_.Send({"direct", "record", "start", "night-7"}), 0);
  EXPECT_EQ(StreamMgrApi::CurrentlyRecordingREID(ipc, kTimeoutMs), "night-7");
  EXPECT_EQ(bench_.Send({"record", "start"}), 0);
  const auto becomes = [&ipc](const std::string& id) {
    return Eventually([&] { return StreamMgrApi::CurrentlyRecordingREID(ipc, kTimeoutMs) == id; });
  };
  EXPECT_TRUE(becomes("bench-2"));
  EXPECT_EQ(bench_.Send({"record", "stop"}), 0);
  EXPECT_TRUE(becomes(""));
  unsetenv("LINX_IPC_DIR");
}

TEST(Send, WithoutABenchFails) {
  const BenchRun bench;
  EXPECT_EQ(bench.Send({"ping"}), 1);
  EXPECT_THAT(bench.SendOutput(), HasSubstr("is there a bench?"));
}

}  // namespace
