#include "PowerCuts.h"

namespace {

constexpr std::size_t kStep = MM_FAULT_STEP;  // 1: every point
constexpr std::uint64_t kSmallestFile = std::uint64_t{128} << 10;

// Opening with an old log to fold in, the beginning of a file, commits of all kinds, the turn over to
// a next file, a clean end.
void TurnOver(Usage& usage) {
  ASSERT_TRUE(usage.Open());
  for (unsigned int i = 0; i < 60; ++i) {
    usage.Temperature();
    if (i % 3 == 0) usage.Text(i % 2 == 0 ? 40 : 1000);
    if (i % 4 == 1) usage.Bookmark();
    if (i % 8 == 1) usage.Covert();
    usage.Turn(i % 7 == 0 ? 1000 : i % 4 == 2 ? 30 : 250);
  }
  usage.Close();
}

// Enough for the log to be copied back and begun again, in one file.
void FoldIn(Usage& usage) {
  ASSERT_TRUE(usage.Open());
  for (unsigned int i = 0; i < 12; ++i) {
    usage.Temperature();
    for (int text = 0; i >= 1 && i <= 6 && text < 190; ++text) usage.Text(1000);
    usage.Bookmark();
    usage.Turn(500);
  }
  usage.Close();
}

TEST(PowerCutTest, NothingPromisedIsLostWhereverTheStretchIsCut) {
  PowerCuts cuts(kSmallestFile, TurnOver);
  EXPECT_GE(cuts.Files(), 3U) << "the earlier run's, and at least two";
  EXPECT_GT(cuts.Count(FileOp::kDelete, "metadata.000001.db-wal"), 0) << "folded in";
  PowerCuts::Plan plan;
  plan.chances = 4;
  plan.step = kStep;
  plan.reopenEvery = 50;
  const PowerCuts::Result result = cuts.Cut(plan);
  std::printf("%d states, %d opened again; lost at most the last %u ms, of critical ones %u ms\n",
              result.states, result.reopened, result.oldestLostMs, result.oldestLostCriticalMs);
  EXPECT_EQ(result.faults, 0) << result.firstFault;
  EXPECT_GE(result.states, 3000 / static_cast<int>(kStep));
  EXPECT_LE(result.oldestLostMs, 1500U);
  EXPECT_LE(result.oldestLostCriticalMs, 50U + 1000U) << "a turn can take a second";
}

TEST(PowerCutTest, NothingPromisedIsLostWhileTheLogIsCopiedBack) {
  PowerCuts cuts(std::uint64_t{16} << 20, FoldIn);
  EXPECT_EQ(cuts.Files(), 2U);
  EXPECT_GE(cuts.Count(FileOp::kWrite, "metadata.000002.db-wal"), 2) << "the log was begun again";
  PowerCuts::Plan plan;
  plan.onlyNearFileWrites = true;
  plan.step = 9 * kStep;
  const PowerCuts::Result result = cuts.Cut(plan);
  std::printf("%d states\n", result.states);
  EXPECT_EQ(result.faults, 0) << result.firstFault;
  EXPECT_GE(result.states, 300 / static_cast<int>(kStep));
}

// That the checks can fail.
class BadDiskTest : public testing::TestWithParam<Honesty> {};

TEST_P(BadDiskTest, IsFoundOut) {
  PowerCuts cuts(kSmallestFile, TurnOver);
  PowerCuts::Plan plan;
  plan.honesty = GetParam();
  plan.untilFault = true;
  const PowerCuts::Result result = cuts.Cut(plan);
  std::printf("%d faults in %d states: %s\n", result.faults, result.states, result.firstFault.c_str());
  EXPECT_GT(result.faults, 0);
}

INSTANTIATE_TEST_SUITE_P(Disks, BadDiskTest, testing::Values(Honesty::kNoSync, Honesty::kNoDirectorySync));

}  // namespace
