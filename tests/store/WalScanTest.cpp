// Compares the verdict on the bytes of a WAL with what SQLite recovers from them.
#include <gtest/gtest.h>

#include "WalFiles.h"
#include "WalScan.h"
#include "system/BigEndian.h"

namespace {

using store::ScanWal;
using store::WalState;

unsigned char* At(std::string& wal, std::size_t offset) {
  return reinterpret_cast<unsigned char*>(wal.data()) + offset;
}
std::size_t FrameAt(std::size_t number) {
  return kWalHeader + number * kWalFrame;
}
bool Commits(std::string wal, std::size_t frame) {
  return GetU32(At(wal, FrameAt(frame) + 4)) != 0;
}
std::size_t Frames(const std::string& wal) {
  return (wal.size() - kWalHeader) / kWalFrame;
}

class WalScanTest : public testing::Test {
 protected:
  // Scans the WAL. When it can be checkpointed, SQLite must recover as many bytes.
  store::WalFinding Find(const std::string& wal) const {
    const auto found = ScanWal(ReaderOf(wal));
    if (found.state == WalState::kSound || found.state == WalState::kTorn) {
      EXPECT_EQ(found.endOfCommits, RecoveredBySqlite({made_.database, wal}, dir_));
    }
    return found;
  }

  const WalFiles made_ = MakeWal(4);
  TempDir dir_;
};

// The place of the first bad frame, and the commits after it, decide the verdict.
TEST_F(WalScanTest, EachFlippedBitIsFound) {
  ASSERT_EQ(Find(made_.wal).state, WalState::kSound);
  ASSERT_EQ(Find(made_.wal).endOfCommits, made_.wal.size());
  const std::size_t frames = Frames(made_.wal);
  for (std::size_t at = 0; at < made_.wal.size(); at += at < kWalHeader ? 1 : 5) {
    std::string wal = made_.wal;
    wal[at] = static_cast<char>(wal[at] ^ (1 << at % 8));
    const auto found = Find(wal);
    if (at < kWalHeader) {
      EXPECT_EQ(found.state, WalState::kDamaged) << at;
      EXPECT_EQ(found.brokenAt, 0U) << at;
      continue;
    }
    const std::size_t broken = (at - kWalHeader) / kWalFrame;
    std::size_t commits = 0;
    for (std::size_t frame = broken; frame < frames; ++frame) commits += Commits(wal, frame) ? 1U : 0U;
    EXPECT_EQ(found.state, commits > 1 ? WalState::kDamaged : WalState::kTorn) << at;
    EXPECT_EQ(found.brokenAt, FrameAt(broken)) << at;
  }
}

TEST_F(WalScanTest, TellsWhatACutCanLeaveFromDamage) {
  using Wal = std::string&;
  const struct {
    const char* name;
    void (*change)(Wal wal, std::size_t last);
    WalState state;
  } kCases[] = {
      {"empty", [](Wal wal, std::size_t) { wal.clear(); }, WalState::kEmpty},
      {"one byte", [](Wal wal, std::size_t) { wal.resize(1); }, WalState::kDamaged},
      {"header cut short", [](Wal wal, std::size_t) { wal.resize(31); }, WalState::kDamaged},
      {"header zeroed", [](Wal wal, std::size_t) { wal.replace(0, 32, 32, '\0'); }, WalState::kDamaged},
      {"text", [](Wal wal, std::size_t) { wal = std::string(5000, 'x'); }, WalState::kDamaged},
      {"page of no size", [](Wal wal, std::size_t) { PutU32(At(wal, 8), 0); }, WalState::kDamaged},
      {"header alone", [](Wal wal, std::size_t) { wal.resize(32); }, WalState::kSound},
      {"last commit missing", [](Wal wal, std::size_t last) { wal.resize(FrameAt(last)); }, WalState::kSound},
      {"last commit cut", [](Wal wal, std::size_t last) { wal.resize(FrameAt(last) + 400); },
       WalState::kTorn},
      {"zeros behind", [](Wal wal, std::size_t) { wal.append(3000, '\0'); }, WalState::kSound},
      {"last commit zeroed",
       [](Wal wal, std::size_t last) { wal.replace(FrameAt(last), kWalFrame, kWalFrame, '\0'); },
       WalState::kSound},
      {"first page of the last commit zeroed",
       [](Wal wal, std::size_t last) { wal.replace(FrameAt(last - 1), kWalFrame, kWalFrame, '\0'); },
       WalState::kTorn},
      {"no page's number", [](Wal wal, std::size_t last) { PutU32(At(wal, FrameAt(last)), 0); },
       WalState::kTorn},
      {"a synced commit zeroed",
       [](Wal wal, std::size_t) { wal.replace(FrameAt(2), kWalFrame, kWalFrame, '\0'); }, WalState::kDamaged},
      {"another's salts in the last commit",
       [](Wal wal, std::size_t last) { *At(wal, FrameAt(last) + 8) ^= 1; }, WalState::kTorn},
      {"another's salts in all but the first",
       [](Wal wal, std::size_t last) {
         for (std::size_t frame = 1; frame <= last; ++frame) *At(wal, FrameAt(frame) + 8) ^= 1;
       },
       WalState::kDamaged},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    std::string wal = made_.wal;
    c.change(wal, Frames(wal) - 1);
    EXPECT_EQ(Find(wal).state, c.state);
  }
}

// After a restart old frames follow the new frames.
TEST(WalScan, StaleFramesAreIgnored) {
  const WalFiles made = MakeWal(6, 4);
  const auto found = ScanWal(ReaderOf(made.wal));
  EXPECT_EQ(found.state, WalState::kSound);
  EXPECT_LT(found.endOfCommits, made.wal.size());
  const TempDir dir;
  EXPECT_EQ(found.endOfCommits, RecoveredBySqlite(made, dir));
}

// Rewrites the checksums as a machine of the other byte order would.
void TurnChecksums(std::string& wal) {
  std::uint32_t s0 = 0;
  std::uint32_t s1 = 0;
  PutU32(At(wal, 0), GetU32(At(wal, 0)) ^ 1U);
  const bool bigEndian = (GetU32(At(wal, 0)) & 1U) != 0;
  const auto word = [&](std::size_t at) {
    const std::uint32_t value = GetU32(At(wal, at));
    return bigEndian ? value : __builtin_bswap32(value);
  };
  const auto add = [&](std::size_t at, std::size_t size) {
    for (const std::size_t end = at + size; at < end; at += 8) {
      s0 += word(at) + s1;
      s1 += word(at + 4) + s0;
    }
  };
  const auto put = [&](std::size_t at) {
    PutU32(At(wal, at), s0);
    PutU32(At(wal, at + 4), s1);
  };
  add(0, 24);
  put(24);
  for (std::size_t frame = 0; frame < Frames(wal); ++frame) {
    add(FrameAt(frame), 8);
    add(FrameAt(frame) + 24, kWalPage);
    put(FrameAt(frame) + 16);
  }
}

TEST_F(WalScanTest, ReadsChecksumsOfBothByteOrders) {
  std::string wal = made_.wal;
  TurnChecksums(wal);
  ASSERT_NE(wal, made_.wal);
  EXPECT_EQ(Find(wal).state, WalState::kSound);
  EXPECT_EQ(Find(wal).endOfCommits, wal.size());
  PutU32(At(wal, 0), GetU32(At(wal, 0)) ^ 1U);
  EXPECT_EQ(Find(wal).state, WalState::kDamaged) << "in neither";
}

}  // namespace
