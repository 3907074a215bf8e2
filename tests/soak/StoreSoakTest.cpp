// One run over hundreds of files, of which only the last ones are kept: the store's memory and
// descriptors do not grow with them, nor does its log.
#include <malloc.h>

#include "store/CopyFixture.h"
#include "support/LogCapture.h"

namespace {

struct Usage {
  std::size_t heapBytes;
  std::ptrdiff_t descriptors;
};

Usage Used() {
  const std::filesystem::directory_iterator descriptors("/proc/self/fd");
  return {mallinfo2().uordblks, std::distance(begin(descriptors), {})};
}

TEST_F(CopyTest, RunOverHundredsOfFiles) {
  constexpr int kFiles = 150;
  constexpr int kKept = 10;
  options_.maxFileBytes = 81'920;
  clock_.tick = 0xFFFFFFFF - 600'000;  // the ticks wrap on the way
  Open();
  Usage early{};
  const LogCapture log;
  int file = 1;
  for (int record = 0; file < kFiles; ++record) {
    Temperature(static_cast<short>(record % 100));
    Brakes(record % 2 == 0);
    if (record % 10 == 9) After(500);
    if (!Exists(file + 1)) continue;
    ++file;
    if (file > kKept) std::filesystem::remove(File(file - kKept));
    if (file == kFiles / 3) early = Used();
  }
  const Usage late = Used();
  EXPECT_LE(late.heapBytes, early.heapBytes + 2048);
  EXPECT_EQ(late.descriptors, early.descriptors);
  EXPECT_TRUE(Copy());
  EXPECT_EQ(InCopy("SELECT missing_files FROM copy"), std::to_string(kFiles - kKept) + "\n");
  Close();
  EXPECT_EQ(Names().size(), static_cast<std::size_t>(kKept) + 1);
}

}  // namespace
