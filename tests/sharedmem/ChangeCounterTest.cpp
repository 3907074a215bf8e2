#include <sched.h>

#include <csignal>
#include <cstdint>
#include <optional>

#include "OwnRecord.h"
#include "support/Child.h"
#include "support/WholeRecord.h"
#include "system/BigEndian.h"

namespace {

constexpr std::size_t kFields = MetadataSharedMem::kChangeCounterOffset;

class ChangeCounter : public OwnRecord {
 protected:
  ChangeCounter() : items_(view_.MetadataItems(false)) {}

  std::uint32_t Counter() const { return GetU32(items_ + kFields); }

  MetadataSharedMem view_;
  unsigned char* items_;
};

TEST_F(ChangeCounter, IsOddWhileWritingAndEvenAfterwards) {
  struct Case {
    std::uint32_t before, during, after;
  };
  constexpr Case kCases[] = {
      {0, 1, 2},
      {0xFE, 0xFF, 0x100},
      {0x12345678, 0x12345679, 0x1234567A},
      {0xFFFFFFFE, 0xFFFFFFFF, 0},
      // A writer that was killed during a write left the counter odd.
      {1, 3, 4},
      {0xFFFFFFFF, 1, 2},
  };
  ASSERT_NE(items_, nullptr);
  for (const auto& [before, during, after] : kCases) {
    PutU32(items_ + kFields, before);
    {
      const MetadataSharedMem::Writing writing(items_);
      EXPECT_EQ(Counter(), during) << before;
      EXPECT_FALSE(ReadWhole(items_)) << before;
    }
    EXPECT_EQ(Counter(), after) << before;
    EXPECT_TRUE(ReadWhole(items_)) << before;
  }
  const MetadataSharedMem::Writing nowhere(nullptr);
}

// Changes the record again and again, field by field, until it is killed.
int WriteForEver() {
  MetadataSharedMem view;
  unsigned char* items = view.MetadataItems(false);
  for (std::uint32_t change = 1;; ++change) {
    {
      const MetadataSharedMem::Writing writing(items);
      for (std::size_t at = 0; at < kFields; at += 4) PutU32(items + at, change);
    }
    sched_yield();
  }
}

TEST_F(ChangeCounter, ReaderInAnotherProcessTakesNoTornCopy) {
  constexpr int kChanges = 1000;
  Child writer(WriteForEver);
  std::uint32_t last = 0;
  for (int changes = 0; changes < kChanges && !HasFailure();) {
    ASSERT_FALSE(writer.Ended()) << "after " << changes << " changes";
    sched_yield();
    for (int look = 0; look < 100; ++look) {
      const std::optional<std::string> copy = ReadWhole(items_);
      if (!copy) continue;
      const auto* fields = reinterpret_cast<const unsigned char*>(copy->data());
      const std::uint32_t change = GetU32(fields);
      for (std::size_t at = 4; at < kFields; at += 4)
        EXPECT_EQ(GetU32(fields + at), change) << "torn at " << at;
      EXPECT_GE(change, last);
      changes += change != last ? 1 : 0;
      last = change;
    }
  }
  writer.Signal(SIGKILL);
  EXPECT_EQ(writer.Wait(), 128 + SIGKILL);

  // The next writer takes over, wherever the killed writer stopped.
  { const MetadataSharedMem::Writing writing(items_); }
  EXPECT_TRUE(ReadWhole(items_));
}

}  // namespace
