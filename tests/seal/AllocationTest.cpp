// Hashing what is recorded takes no memory.
#include <gtest/gtest.h>

#include "seal/CommitHash.h"
#include "seal/RowHash.h"
#include "support/AllocationCount.h"

namespace {

TEST(Allocation, NoneToHashACommit) {
  const std::string text(1024, 'x');
  const seal::Seal seal;
  const std::size_t before = AllocationCount();
  seal::CommitHash commit({}, seal);
  for (std::int64_t seq = 1; seq < 100; ++seq) {
    seal::RowHash row("string", 6);
    for (int column = 0; column < 5; ++column) row.Add(seq);
    row.Add(std::string_view(text));
    commit.AddRow(row.End());
  }
  const seal::Hash hash = commit.End();
  EXPECT_EQ(AllocationCount(), before);
  EXPECT_NE(hash, seal::Hash{});
}

// Text longer than the buffer, and none, in every place of it.
TEST(RowHash, IsThatOfItsBytesWhereverTheBufferEnds) {
  for (const std::size_t bytes : {0, 1, 127, 128, 200, 255, 256, 257, 600}) {
    const std::string text(bytes, 'y');
    seal::RowHash row("t", 2);
    row.Add(std::string_view(text));
    row.Add(std::int64_t{-1});
    std::string canonical{1, 't', 2, 2};
    if (bytes >= 128) canonical += static_cast<char>((bytes & 127) | 128);
    canonical += static_cast<char>(bytes >= 128 ? bytes >> 7 : bytes);
    canonical += text + std::string{1, 1};
    seal::HashState expected(seal::Label::kRow);
    expected.Add({reinterpret_cast<const unsigned char*>(canonical.data()), canonical.size()});
    EXPECT_EQ(row.End(), expected.End()) << bytes;
  }
}

}  // namespace
